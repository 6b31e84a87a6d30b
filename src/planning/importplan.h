// SPDX-License-Identifier: MIT
/// What an import would do.
#pragma once

#include "document/document.h"
#include "planning/changeset.h"
#include "report/warning.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace quendar {

class PlanningClient;

/// A session or a printer, whose directory is made or dropped as a whole.
struct EntryChange {
    QString path;
    QString name;
    bool isMade;     ///< otherwise it is dropped
    bool isIdMadeUp; ///< the document gives none: each import makes up another
};

struct ImportPlan {
    QByteArray current;                ///< the document of the settings before
    ChangeSet changes;                 ///< what would differ in the registry
    QVector<EntryChange> entries;      ///< directory by directory, those that are dropped first
    QMap<QString, QString> entryNames; ///< by path, of all sessions and printers that this is about
    QSet<QString> madeUpEntries;       ///< those of them whose ids the import makes up, others each time
    QStringList creations;     ///< paths of sessions and printers, in the order in which the document makes them
    QVector<Warning> unknown;  ///< settings that the device does not have: path and text
    QVector<Warning> warnings; ///< what else would not be done
    QStringList sections;      ///< those to be applied, in order; one may be there twice

    /// Whether nothing would be written nor applied, and nothing missed.
    bool isEmpty() const { return changes.byPath().isEmpty() && sections.isEmpty() && unknown.isEmpty(); }
};

/// How many settings there are of each kind.
struct SettingCounts {
    int changed = 0;
    int made = 0;
    int deleted = 0;
    int unknown = 0;
};

SettingCounts countsOf(const ImportPlan &plan);

/// The sections to be applied in which something changes, in order, each once. The others differ only in how a document
/// shows them.
QStringList changingSections(const ImportPlan &plan);

/// What an import of @p document would do, found out by the applier itself through @p client, which then shows the
/// registry as it would be. Throws what the import would throw, and Error where the registry's library does not keep
/// pending changes as the plan needs it, or somebody else writes what the plan is about.
ImportPlan planImport(const Document &document, PlanningClient &client);

} // namespace quendar
