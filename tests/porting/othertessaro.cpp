// SPDX-License-Identifier: MIT
#include "othertessaro.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>
#include <QtCore/QUuid>

#include <sys/stat.h>

namespace {

const QString placeholder = QStringLiteral("{UUID}");

void addTree(Nodes &nodes, const QString &before, const QJsonObject &tree) {
    for (auto entry = tree.begin(); entry != tree.end(); ++entry) {
        const QString path = before + entry.key();
        nodes.insert(path, entry->isString() ? std::optional(entry->toString()) : std::nullopt);
        addTree(nodes, path + QLatin1Char('/'), entry->toObject());
    }
}

QJsonObject treeOf(const QString &directory, const Nodes &nodes) {
    QJsonObject tree;
    const auto children = childrenOf(directory, nodes);
    for (auto child = children.cbegin(); child != children.cend(); ++child)
        tree.insert(child.key().section(QLatin1Char('/'), -1), *child == RegNodeKey
                                                                   ? QJsonValue(*nodes.value(child.key()))
                                                                   : QJsonValue(treeOf(child.key(), nodes)));
    return tree;
}

/// The parser drops a byte order mark from a text's start.
QByteArray withEscapedMarks(QByteArray json) {
    return json.replace("\xEF\xBB\xBF", "\\ufeff");
}

bool isUuid(const QString &name) {
    return !QUuid(name).isNull();
}

} // namespace

QString fileName() {
    return QFile::decodeName(qgetenv("OTHER_REGISTRY"));
}

QString parentOf(const QString &path) {
    return path.left(qMax(path.lastIndexOf(QLatin1Char('/')), 0));
}

bool covers(const QString &path, const QString &other) {
    return other == path || other.startsWith(path + QLatin1Char('/'));
}

QMap<QString, _RegNodeType> childrenOf(const QString &path, const Nodes &nodes) {
    QMap<QString, _RegNodeType> children;
    const QString before = path.isEmpty() ? path : path + QLatin1Char('/');
    for (auto node = nodes.lowerBound(before); node != nodes.cend() && node.key().startsWith(before); ++node)
        if (!node.key().midRef(before.size()).contains(QLatin1Char('/')))
            children.insert(node.key(), node->has_value() ? RegNodeKey : RegNodeDir);
    return children;
}

void apply(const Change &change, Nodes &nodes) {
    if (change.isRemoval || change.text) {
        nodes.remove(change.path);
        const QString before = change.path + QLatin1Char('/');
        for (auto node = nodes.lowerBound(before); node != nodes.end() && node.key().startsWith(before);)
            node = nodes.erase(node);
    }
    if (change.isRemoval)
        return;
    nodes.insert(change.path, change.text);
    for (QString above = parentOf(change.path); !above.isEmpty(); above = parentOf(above))
        nodes.insert(above, std::nullopt);
}

bool TessaroPrivate::refresh() {
    struct stat named = {};
    struct stat held = {};
    if (file.isOpen() && ::stat(qPrintable(fileName()), &named) == 0 && ::fstat(file.handle(), &held) == 0 &&
        named.st_ino == held.st_ino)
        return true;
    file.close();
    file.setFileName(fileName());
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QJsonDocument json = QJsonDocument::fromJson(withEscapedMarks(file.readAll()));
    committed.clear();
    addTree(committed, QString(), json.object());
    seen = committed;
    for (const Change &change : std::as_const(log))
        apply(change, seen);
    return isOpen && json.isObject();
}

bool TessaroPrivate::save(const Nodes &nodes) const {
    QSaveFile next(fileName());
    return next.open(QIODevice::WriteOnly) &&
           next.write(withEscapedMarks(QJsonDocument(treeOf(QString(), nodes)).toJson())) > 0 && next.commit();
}

void TessaroPrivate::add(const Change &change) {
    if (change.isRemoval)
        forget(change.path);
    log.append(change);
    apply(change, seen);
}

void TessaroPrivate::fill(const QString &directory) {
    QStringList names = directory.split(QLatin1Char('/'));
    if (!isUuid(names.last()))
        return;
    for (QString &name : names)
        if (isUuid(name))
            name = placeholder;
    names.first() = QStringLiteral("templates");
    const QString before = names.join(QLatin1Char('/')) + QLatin1Char('/');
    const Nodes all = seen;
    for (auto node = all.lowerBound(before); node != all.cend() && node.key().startsWith(before); ++node) {
        const QString path = directory + QLatin1Char('/') + node.key().mid(before.size());
        if (!path.contains(placeholder) && !seen.contains(path) && !isKey(parentOf(path)))
            add({path, false, *node});
    }
}

void TessaroPrivate::forget(const QString &path) {
    const auto isThere = [&](const Change &change) { return covers(path, change.path); };
    log.erase(std::remove_if(log.begin(), log.end(), isThere), log.end());
}

void TessaroPrivate::rollback(const QString &path) {
    forget(path);
    if (path.isEmpty())
        log.clear();
    file.close(); // the next call reads all again
}

Tessaro::Tessaro() : d(std::make_unique<TessaroPrivate>()) {}

Tessaro::~Tessaro() = default;

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam & /*param*/, const QString & /*last*/) {
    if (!d->refresh())
        return Unreadable;
    const Nodes &nodes = d->has("hides-from-get") ? d->committed : d->seen;
    const auto node = nodes.find(path);
    if (node == nodes.end() || !node->has_value())
        return node == nodes.end() ? Absent : Misplaced;
    value = **node;
    return Done;
}
