// SPDX-License-Identifier: MIT
#include "cli/treejson.h"

#include "cli/fail.h"
#include "tessaro/path.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonParseError>

namespace tessaro {

namespace {

const QString topNames[] = {QStringLiteral("root"), QStringLiteral("templates"), QStringLiteral("tmp")};

/// U+FEFF as an escape, since the parser drops the character itself from a string's start; a mark before the text goes.
QByteArray withEscapedMarks(QByteArray text) {
    const QByteArray mark("\xEF\xBB\xBF");
    if (text.startsWith(mark))
        text.remove(0, mark.size());
    return text.replace(mark, "\\ufeff");
}

/// Counts the members of all objects in a well-formed text. The parser keeps only one of those that bear the same name.
int membersWritten(const QByteArray &text) {
    int count = 0;
    bool inString = false;
    for (auto at = text.cbegin(); at != text.cend(); ++at)
        if (inString && *at == '\\')
            ++at;
        else if (*at == '"')
            inString = !inString;
        else if (*at == ':' && !inString)
            ++count;
    return count;
}

/// Throws for what is no tree; otherwise returns how many members there are.
int checkTree(const QString &directory, const QJsonObject &tree) {
    int count = tree.size();
    for (auto node = tree.begin(); node != tree.end(); ++node) {
        const QString path = childOf(directory, node.key());
        if (!isPath(node.key()) || node.key().contains(QLatin1Char('/')))
            fail(QStringLiteral("unfit name \"%1\" in \"%2\"").arg(node.key(), directory));
        if (node.value().isObject())
            count += checkTree(path, node.value().toObject());
        else if (!node.value().isString())
            fail(QStringLiteral("\"%1\" is neither an object nor a string").arg(path));
        else if (!node.value().toString().isValidUtf16())
            fail(QStringLiteral("the text of \"%1\" is not Unicode").arg(path));
    }
    return count;
}

void checkTop(const QJsonObject &tree) {
    if (!tree.contains(topNames[0]))
        fail(QStringLiteral("no \"root\""));
    for (auto node = tree.begin(); node != tree.end(); ++node) {
        if (std::find(std::begin(topNames), std::end(topNames), node.key()) == std::end(topNames))
            fail(QStringLiteral("unknown name \"%1\" at the top").arg(node.key()));
        if (!node.value().isObject())
            fail(QStringLiteral("\"%1\" is no object").arg(node.key()));
    }
}

} // namespace

QJsonObject parseTree(QByteArray text) {
    text = withEscapedMarks(text);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        fail(QStringLiteral("%1 at byte %2").arg(error.errorString(), QString::number(error.offset)));
    const QJsonObject tree = document.object();
    checkTop(tree);
    if (checkTree(QString(), tree) != membersWritten(text))
        fail(QStringLiteral("an object has two members of one name"));
    return tree;
}

void writeTree(Store &store, const QString &directory, const QJsonObject &tree) {
    for (auto node = tree.begin(); node != tree.end(); ++node) {
        const QString path = childOf(directory, node.key());
        const bool isKey = node.value().isString();
        store.put(path, isKey ? keyNode(node.value().toString()) : directoryNode());
        if (!isKey)
            writeTree(store, path, node.value().toObject());
    }
}

QJsonObject readTree(Store &store, const QString &directory) {
    QJsonObject tree;
    const std::vector<Entry> entries = store.list(directory);
    for (const auto &[path, node] : entries)
        tree.insert(nameOf(path), node.isKey() ? QJsonValue(node.value) : QJsonValue(readTree(store, path)));
    return tree;
}

} // namespace tessaro
