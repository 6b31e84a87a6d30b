// SPDX-License-Identifier: MIT
/// What an import has to have applied.
#pragma once

#include "document/document.h"

#include <QtCore/QStringList>

namespace quendar {

/// The names of the top-level sections of @p wanted that are not so in @p current, an exported document: in document
/// order, one for each such section. Throws Error when a document cannot be loaded or the engine cannot hold the names
/// of both.
QStringList changedSections(const Document &wanted, const QByteArray &current);

/// Throws the Error of a document that cannot be loaded.
void requireLoadable(const Document &document);

} // namespace quendar
