// SPDX-License-Identifier: MIT
#include "planning/importplan.h"

#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "planning/foresight.h"
#include "planning/places.h"
#include "planning/planningclient.h"
#include "registry/viewkey.h"
#include "stages/changedsections.h"
#include "stages/exportsettings.h"
#include "stages/roomcheck.h"

#include <QtCore/QUuid>

#include <algorithm>
#include <tuple>

namespace quendar {

namespace {

/// The order of entries: by directory, what is dropped first; then by path, or by name where that is another each time.
auto placeOf(const EntryChange &entry) {
    return std::make_tuple(ViewKey(entry.path).parent(), entry.isMade, entry.isIdMadeUp,
                           entry.isIdMadeUp ? entry.name : entry.path);
}

/// Whether the document says nowhere what the entry at @p path, which an import makes, is called.
bool isMadeUp(const QString &path, const Document &document) {
    const QUuid id(nameIn(path).toString());
    return !id.isNull() && !document.contents.entries.contains(path) &&
           !document.text.contains(id.toString(QUuid::WithoutBraces), Qt::CaseInsensitive);
}

QVector<EntryChange> entryChanges(const ChangeSet &changes, const Document &document) {
    QVector<EntryChange> entries;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        const bool isMade = change->before.isAbsent() && change->after.isDirectory();
        const bool isDropped = change->before.isDirectory() && change->after.isAbsent();
        if (entryOf(path) != path || (!isMade && !isDropped))
            continue;
        const Change name = changes.byPath().value(nameKeyOf(path));
        entries.append({path, (isMade ? name.after : name.before).text, isMade, isMade && isMadeUp(path, document)});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const EntryChange &first, const EntryChange &second) {
        return placeOf(first) < placeOf(second);
    });
    return entries;
}

/// The names of the sessions and printers in which something changes, by their paths.
QMap<QString, QString> changedEntries(const ChangeSet &changes, TessaroClient &client) {
    QMap<QString, QString> names;
    const QList<QString> paths = changes.byPath().keys();
    for (const QString &path : paths) {
        const QString entry = entryOf(path);
        if (!entry.isEmpty() && !names.contains(entry))
            names.insert(entry, readNode(client, nameKeyOf(entry)).text);
    }
    return names;
}

} // namespace

ImportPlan planImport(const Document &document, PlanningClient &client) {
    ImportPlan plan;
    const ExportedSettings current = exportSettings(client);
    plan.current = current.document;
    plan.sections = changedSections(document, current.document);
    requireRoom(document, current);

    LumoConfigViewModifier applier(client, [&](const Warning &warning) {
        const bool isUnknown = warning.kind == Warning::NotSet;
        if (isUnknown)
            requireUnknown(client, warning.path);
        (isUnknown ? plan.unknown : plan.warnings).append(warning);
    });
    applyDocument(document.text, applier);

    plan.changes = client.settle();
    if (!plan.isEmpty())
        requireForesight(client, plan.changes, plan.current);
    plan.entries = entryChanges(plan.changes, document);
    plan.entryNames = changedEntries(plan.changes, client);
    return plan;
}

} // namespace quendar
