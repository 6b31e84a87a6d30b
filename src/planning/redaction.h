// SPDX-License-Identifier: MIT
/// A document without its secrets.
#pragma once

#include "document/document.h"
#include "planning/documentsettings.h"
#include "planning/secrets.h"

#include <QtCore/QStringList>

namespace quendar {

struct Redaction {
    QByteArray document;
    QStringList dropped;            ///< the paths of the settings that are left out
    QVector<DocumentEntry> entries; ///< the sessions and printers in which some were
};

/// @p document without the elements of secret keys. What an import of it does not find it leaves as the device has it;
/// a session or printer that is new there has the device's defaults. Left out are also comments, processing
/// instructions, the document type, and attributes that an import does not look at: anything may be written in them. A
/// printer's name stays: by it the printer is known. Throws Error for a document that cannot be read.
Redaction redacted(const Document &document, const Secrets &secrets);

} // namespace quendar
