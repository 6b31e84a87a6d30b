// SPDX-License-Identifier: MIT
/// A first look at a document, before the engine loads it.
#pragma once

#include "engine/names.h"

#include <QtCore/QByteArray>

#include <optional>

namespace quendar {

/// What a document will take room for.
struct Contents {
    Names names;
    QSet<QString> entries;  ///< the paths of its sessions and printers in the registry
    int unnamedEntries = 0; ///< those for which an import makes up an id, or finds a place by itself
};

/// The contents of a document in @p bytes, whose decoded text is @p text. Throws Error, line included, where its
/// elements, or what an import makes of them in the registry, would be nested too deep, or where its names are too
/// many. A document that cannot be read to its end is left to the load, whose message says so better.
Contents scanDocument(const QByteArray &bytes, const QString &text);

/// The same in a tenth of the time, for a document of the plain form in which an export writes it: UTF-8, tags with
/// attributes in double quotes, nothing else that begins with "<", no namespaces. Nothing for a document of another
/// form, nor for one beyond a limit, which only a reader can tell the line of. That the tags match is not looked at.
std::optional<Contents> scanPlainDocument(const QByteArray &bytes);

/// The names that the engine will meet. Throws Error, line included, where they are too many.
Names scanNames(const QByteArray &bytes);

} // namespace quendar
