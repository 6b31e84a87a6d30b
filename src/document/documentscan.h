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
    QSet<QString> entries;  ///< what the view will call its sessions and printers: `uuid-` and the id
    int unnamedEntries = 0; ///< sessions and printers without an id that can be used: each import makes up one
};

/// Throws Error, line included, for a document whose elements, or what an import makes of them in the registry, would
/// be nested too deep, or that holds too many names. One that cannot be read to its end is left to the load, whose
/// message says so better.
Contents scanDocument(const QByteArray &document);

/// The same in a tenth of the time, for a document of the plain form in which an export writes it: UTF-8, tags with
/// attributes in double quotes, nothing else that begins with "<", no namespaces. Nothing for a document of another
/// form, nor for one beyond a limit, which only a reader can tell the line of. That the tags match is not looked at.
std::optional<Contents> scanPlainDocument(const QByteArray &document);

} // namespace quendar
