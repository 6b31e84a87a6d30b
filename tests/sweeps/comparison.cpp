// SPDX-License-Identifier: MIT
#include "sweeps/comparison.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace {

void addNodes(Nodes &nodes, const QString &path, const QJsonValue &node) {
    nodes.insert(path, node.isString() ? node : QJsonObject());
    const QJsonObject directory = node.toObject();
    for (auto entry = directory.begin(); entry != directory.end(); ++entry)
        addNodes(nodes, path + QLatin1Char('/') + entry.key(), *entry);
}

} // namespace

QJsonObject parsed(QByteArray json) {
    return QJsonDocument::fromJson(json.replace("\xEF\xBB\xBF", "\\ufeff")).object(); // the parser would drop it
}

QStringList texts(const QJsonValue &array) {
    QStringList all;
    for (const auto &text : array.toArray())
        all.append(text.toString());
    return all;
}

QString word(const QJsonObject &object, const char *name) {
    return object.value(QLatin1String(name)).toVariant().toString();
}

Nodes nodesOf(const QByteArray &dump) {
    Nodes nodes;
    addNodes(nodes, QString(), parsed(dump));
    return nodes;
}

QStringList linesOf(const Nodes &nodes) {
    QStringList lines;
    for (auto node = nodes.cbegin(); node != nodes.cend(); ++node)
        lines.append(node->isString() ? node.key() + QStringLiteral(" = ") + node->toString() : node.key());
    return lines;
}

void Comparison::demand(bool holds, const QString &otherwise) {
    if (!holds)
        wrong.append(otherwise);
}

void Comparison::compare(const char *what, QStringList said, QStringList found) {
    said = comparable(said);
    found = comparable(found);
    said.sort();
    found.sort();
    compareOrdered(what, said, found);
}

void Comparison::compareOrdered(const char *what, const QStringList &said, const QStringList &found) {
    if (said == found)
        return;
    wrong.append(QLatin1String(what));
    for (const QString &line : said)
        if (said.count(line) > found.count(line))
            wrong.append(QStringLiteral("  only said: ") + line);
    for (const QString &line : found)
        if (found.count(line) > said.count(line))
            wrong.append(QStringLiteral("  only found: ") + line);
}

bool Comparison::isMadeUp(const QString &id) const {
    return uuid.match(id).hasMatch() && !known.contains(uuid.match(id).captured().toLower());
}

QStringList Comparison::comparable(QStringList lines) const {
    for (QString &line : lines) {
        auto found = uuid.match(line);
        while (found.hasMatch()) {
            const bool isUnknown = isMadeUp(found.captured());
            if (isUnknown)
                line.replace(found.captured(), QStringLiteral("made up"));
            found = uuid.match(line, isUnknown ? found.capturedStart() : found.capturedEnd());
        }
    }
    return lines;
}
