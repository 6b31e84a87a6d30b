// SPDX-License-Identifier: MIT
/// Where the sessions and printers of a document are after its import.
#pragma once

#include "planning/documentsettings.h"
#include "planning/importplan.h"

#include <QtCore/QHash>

class TessaroClient;

namespace quendar {

/// A printer is known by its name, whatever id the document gives, and a session without an id gets one. So an entry
/// may come back at another path than the document's; the settings in it go along.
class EntryPlaces {
public:
    /// Of the entries of @p document, which come back among @p returned. @p client sees the registry afterwards. Throws
    /// TessaroError.
    EntryPlaces(const QVector<DocumentEntry> &document, const QVector<DocumentEntry> &returned, const ImportPlan &plan,
                TessaroClient &client);

    /// The path of @p setting in the document that comes back.
    QString placeOf(const DocumentSetting &setting) const;

    /// The path in the registry of what has the path @p place in that document: ids may be written in any form there.
    QString inRegistry(const QString &place) const;

private:
    const QVector<DocumentEntry> &entries;
    QStringList places;               // of each of them
    QHash<QString, QString> printers; // their paths in the registry by those that a document has
};

/// Whether the document gives @p entry no id that can be used.
bool isIdless(const DocumentEntry &entry);

} // namespace quendar
