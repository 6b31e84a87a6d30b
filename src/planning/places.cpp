// SPDX-License-Identifier: MIT
#include "planning/places.h"

#include "registry/viewkey.h"
#include "registry/viewpaths.h"

namespace quendar {

namespace {

const QString printers = QStringLiteral("/printers/");

/// The end of the directory that @p kind names in @p path, its "/" included; -1 where there is none.
int endOfDirectory(const QString &path, const QString &kind) {
    const int start = path.indexOf(kind, viewRoot().size());
    return start < 0 ? -1 : start + kind.size();
}

} // namespace

QString sectionOf(const QString &path) {
    const QString root = viewRoot() + QLatin1Char('/');
    return path.startsWith(root) ? path.mid(root.size()).section(QLatin1Char('/'), 0, 0) : QString();
}

QString entryOf(const QString &path) {
    const int start = qMax(endOfDirectory(path, QStringLiteral("/sessions/")), endOfDirectory(path, printers));
    if (start < 0)
        return {};
    const int end = path.indexOf(QLatin1Char('/'), start);
    return path.left(end);
}

bool isInPrinter(const QString &path) {
    return endOfDirectory(path, printers) > endOfDirectory(path, QStringLiteral("/sessions/"));
}

QString kindOf(const QString &path) {
    return isInPrinter(path) ? QStringLiteral("printer") : QStringLiteral("session");
}

QString nameKeyOf(const QString &entry) {
    return childKey(entry, QStringLiteral("name"));
}

} // namespace quendar
