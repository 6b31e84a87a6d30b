// SPDX-License-Identifier: MIT
/// Whether the registry can still be exported after an import.
#pragma once

#include "document/document.h"
#include "stages/exportsettings.h"

namespace quendar {

/// Throws Error where an import of @p document into the @p current settings would give the view more names than the
/// engine can hold: then no export, and so no import, would go through any more. Counted are the names that stand
/// there, since the import makes entries before it deletes others, those of the document, and the ids of its sessions
/// and printers.
void requireRoom(const Document &document, const ExportedSettings &current);

} // namespace quendar
