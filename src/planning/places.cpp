// SPDX-License-Identifier: MIT
#include "planning/places.h"

#include "registry/viewkey.h"
#include "registry/viewpaths.h"

namespace quendar {

namespace {

/// The innermost session or printer at or above a path.
struct Entry {
    int end = -1; // of its path; -1 for none
    bool isPrinter = false;
};

/// Goes from name to name: what follows a directory of entries is an entry, whatever it is called.
Entry innermost(const QString &path) {
    Entry entry;
    bool isPrinters = false;
    bool isEntries = false;
    for (int start = viewRoot().size() + 1; start < path.size();) {
        const int next = path.indexOf(QLatin1Char('/'), start);
        const int end = next < 0 ? path.size() : next;
        const QStringView name = QStringView(path).mid(start, end - start);
        if (isEntries)
            entry = {end, isPrinters};
        isPrinters = !isEntries && name == QLatin1String("printers");
        isEntries = !isEntries && (isPrinters || name == QLatin1String("sessions"));
        start = end + 1;
    }
    return entry;
}

} // namespace

QString sectionOf(const QString &path) {
    const QString root = viewRoot() + QLatin1Char('/');
    return path.startsWith(root) ? path.mid(root.size()).section(QLatin1Char('/'), 0, 0) : QString();
}

QString entryOf(const QString &path) {
    const Entry entry = innermost(path);
    return entry.end < 0 ? QString() : path.left(entry.end);
}

bool isInPrinter(const QString &path) {
    return innermost(path).isPrinter;
}

QString kindOf(const QString &path) {
    return isInPrinter(path) ? QStringLiteral("printer") : QStringLiteral("session");
}

QUuid idOf(const QString &entry) {
    return QUuid::fromString(nameIn(entry));
}

QString nameKeyOf(const QString &entry) {
    return childKey(entry, QStringLiteral("name"));
}

} // namespace quendar
