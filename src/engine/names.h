// SPDX-License-Identifier: MIT
/// Names in the engine's pools.
#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtXmlPatterns/QXmlName>
#include <QtXmlPatterns/QXmlNamePool>

#include <optional>

namespace quendar {

/// The distinct names of one document: what takes a place in a name pool.
struct Names {
    QSet<QString> local; ///< of elements, attributes and processing instructions
    QSet<QString> prefixes;
    QSet<QString> namespaceUris;
};

/// What the entry of a registry directory is called as an element: by its name, or, where that is a UUID, without the
/// braces, which no element can bear, and with `uuid-` in front.
QString elementName(const QString &entry);

/// The names of two documents in one pool.
Names united(const Names &first, const Names &second);

/// The name, made in @p pool; nothing when the pool is full. The engine numbers local names with twelve bits,
/// prefixes and namespace URIs with nine each, and past that quietly gives one name the number of another.
std::optional<QXmlName> makeName(QXmlNamePool pool, const QString &local, const QString &namespaceUri = {},
                                 const QString &prefix = {});

/// Makes all of @p names in @p pool. Throws Error when they are too many or the pool cannot hold them.
void reserveNames(const QXmlNamePool &pool, const Names &names);

} // namespace quendar
