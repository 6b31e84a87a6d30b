// SPDX-License-Identifier: MIT
#include "othertessaro.h"

#include <QtCore/QStringList>
#include <QtCore/QSystemSemaphore>

#include <sys/file.h>

namespace {

/// Keeps other commits away while it lives.
class Lock {
public:
    Lock() {
        if (file.open(QIODevice::WriteOnly))
            ::flock(file.handle(), LOCK_EX);
    }

private:
    QFile file{fileName() + QStringLiteral(".lock")};
};

bool isPath(const QString &text) {
    return !text.split(QLatin1Char('/')).contains(QString());
}

} // namespace

TessaroClient::TessaroClient() = default;

TessaroClient::~TessaroClient() = default;

int TessaroClient::get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam & /*param*/,
                       const QString & /*last*/) {
    if (!d->refresh())
        return Unreadable;
    const Nodes &nodes = d->has("hides-from-listings") ? d->committed : d->seen;
    if (nodes.value(path))
        children.insert(*nodes.value(path), RegNodeValue);
    else if (!d->has("no-listings-of-new") || d->committed.contains(path))
        children = childrenOf(path, nodes);
    return Done;
}

int TessaroClient::set(const QString &path, const QString &value, const _RegEntryParam & /*param*/) {
    if (!d->refresh())
        return Unreadable;
    const bool isNew = std::any_of(d->log.cbegin(), d->log.cend(),
                                   [&](const Change &change) { return change.path == path && !change.isRemoval; });
    const bool isDirectory = d->seen.contains(path) && !d->isKey(path);
    if (isDirectory && !(isNew && childrenOf(path, d->seen).isEmpty()))
        return Misplaced;
    if (!d->seen.contains(path) && (!isPath(path) || !d->seen.contains(parentOf(path)) || d->isKey(parentOf(path))))
        return Absent;
    d->add({path, false, value.isNull() ? QStringLiteral("") : value});
    return d->has("commits-in-set") ? TessaroClient::commit(path) : Done;
}

int TessaroClient::commit(const QString &path) {
    const Lock lock;
    if (!d->refresh())
        return Unreadable;
    const auto isBelow = [&](const Change &change) { return covers(path, change.path); };
    const auto removesAbove = [&](const Change &change) {
        return change.isRemoval && change.path != path && covers(change.path, path);
    };
    if (d->has("late-defaults"))
        for (const Change &change : QVector<Change>(d->log))
            if (isBelow(change) && !change.isRemoval && !change.text)
                d->fill(change.path);
    const bool isRemoved = std::any_of(d->log.cbegin(), d->log.cend(), removesAbove);
    if (!isRemoved && std::none_of(d->log.cbegin(), d->log.cend(), isBelow))
        return Done;
    Nodes nodes = d->committed;
    if (isRemoved)
        apply({path, true, {}}, nodes);
    for (const Change &change : std::as_const(d->log))
        if (isBelow(change))
            apply(change, nodes);
    if (!d->save(nodes))
        return Refused;
    if (!isRemoved) // otherwise all stays pending, so that it outlives the commit of the removal above
        d->forget(path);
    return Done;
}

/// Applies at once, and adds the section's path to the lines of a file, for the test to see.
int TessaroClient::requestApply(const QString &section, const QString &trigger) {
    const Lock lock;
    QFile applied(fileName() + QStringLiteral(".applied"));
    if (!d->refresh() || d->committed.value(trigger) != section || !applied.open(QIODevice::Append))
        return Refused;
    applied.write(section.toUtf8() + '\n');
    Nodes nodes = d->committed;
    nodes.insert(trigger, QStringLiteral("0"));
    return d->save(nodes) && QSystemSemaphore(trigger, 0, QSystemSemaphore::Open).release() ? Done : Refused;
}

int TessaroClient::create(const QString &path, const _RegEntryType & /*type*/) {
    if (!d->refresh())
        return Unreadable;
    if (d->has("revives-what-was-deleted") && rollback(path) == Done && contains(path) == Done)
        return Done;
    QStringList missing;
    QString above = path;
    for (; !above.isEmpty() && !d->seen.contains(above); above = parentOf(above))
        missing.prepend(above);
    if (!isPath(path) || missing.isEmpty() || d->isKey(above))
        return Misplaced;
    for (const QString &directory : std::as_const(missing))
        d->add({directory, false, {}});
    for (const QString &directory : std::as_const(missing))
        if (!d->has("no-defaults") && !d->has("late-defaults"))
            d->fill(directory);
    return Done;
}

int TessaroClient::del(const QString &path) {
    if (contains(path) != Done)
        return Absent;
    d->add({path, true, {}});
    return Done;
}

int TessaroClient::contains(const QString &path) {
    if (!d->refresh())
        return Unreadable;
    const Nodes &nodes = d->has("hides-from-get") ? d->committed : d->seen;
    return nodes.contains(path) ? Done : Absent;
}

int TessaroClient::rollback(const QString &path) {
    if (!d->has("keeps-on-rollback"))
        d->rollback(path);
    return Done;
}
