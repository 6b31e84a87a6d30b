// SPDX-License-Identifier: MIT
#include "engine/names.h"

#include "engine/limits.h"

#include <QtCore/QUuid>

#include <algorithm>

namespace quendar {

QString elementName(const QString &entry) {
    if (QUuid(entry).isNull())
        return entry;
    return QStringLiteral("uuid-") + QString(entry).remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

Names united(const Names &first, const Names &second) {
    return {first.local | second.local, first.prefixes | second.prefixes, first.namespaceUris | second.namespaceUris};
}

std::optional<QXmlName> makeName(QXmlNamePool pool, const QString &local, const QString &namespaceUri,
                                 const QString &prefix) {
    const QXmlName name(pool, local, namespaceUri, prefix);
    // the empty namespace and prefix have their numbers in every pool
    const bool isKept = name.localName(pool) == local &&
                        (namespaceUri.isEmpty() || name.namespaceUri(pool) == namespaceUri) &&
                        (prefix.isEmpty() || name.prefix(pool) == prefix);
    return isKept ? std::optional(name) : std::nullopt;
}

void reserveNames(const QXmlNamePool &pool, const Names &names) {
    const auto isRefused = [&pool](const QString &local, const QString &uri, const QString &prefix) {
        return !makeName(pool, local, uri, prefix);
    };
    const auto anyRefused = [](const QSet<QString> &set, const auto &refused) {
        return std::any_of(set.cbegin(), set.cend(), refused);
    };
    if (names.local.size() > maximumNames ||
        anyRefused(names.local, [&](const QString &name) { return isRefused(name, {}, {}); }) ||
        anyRefused(names.prefixes, [&](const QString &prefix) { return isRefused({}, {}, prefix); }) ||
        anyRefused(names.namespaceUris, [&](const QString &uri) { return isRefused({}, uri, {}); }))
        throw tooManyNames();
}

} // namespace quendar
