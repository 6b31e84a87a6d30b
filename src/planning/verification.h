// SPDX-License-Identifier: MIT
/// Whether a document comes back from a device.
#pragma once

#include "document/document.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>

namespace quendar {

struct Verification {
    bool isOwnExport = false;       ///< whether the document is what this device exports now
    int settings = 0;               ///< of the document
    QMap<QString, QString> lost;    ///< the reasons by path; null where none is known
    QMap<QString, QString> altered; ///< likewise
    QStringList notCarried;         ///< keys of this device that the document does not hold

    bool isComplete() const { return lost.isEmpty() && altered.isEmpty(); }
};

/// Compares @p document, setting by setting, with what an export would give after an import of it here. A document that
/// this device has just exported must also leave everything as it is. Throws what a plan of the import throws.
Verification verifyDocument(const Document &document);

} // namespace quendar
