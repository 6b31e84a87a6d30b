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

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <tuple>

namespace quendar {

namespace {

/// The order of entries: by directory, what is dropped first; then by path, or by name where that is another each time.
auto placeOf(const EntryChange &entry) {
    return std::make_tuple(ViewKey(entry.path).parent(), entry.isMade, entry.isIdMadeUp,
                           entry.isIdMadeUp ? entry.name : entry.path);
}

QVector<EntryChange> entryChanges(const ChangeSet &changes, const QSet<QString> &madeUp) {
    QVector<EntryChange> entries;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        const bool isMade = change->before.isAbsent() && change->after.isDirectory();
        const bool isDropped = change->before.isDirectory() && change->after.isAbsent();
        if (entryOf(path) != path || (!isMade && !isDropped))
            continue;
        const Change name = changes.byPath().value(nameKeyOf(path));
        entries.append({path, (isMade ? name.after : name.before).text, isMade, madeUp.contains(path)});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const EntryChange &first, const EntryChange &second) {
        return placeOf(first) < placeOf(second);
    });
    return entries;
}

/// The names of the sessions and printers in which something changes or is not known, by their paths.
QMap<QString, QString> entryNames(const ImportPlan &plan, TessaroClient &client) {
    QStringList paths = plan.changes.byPath().keys();
    for (const Warning &setting : plan.unknown)
        paths.append(setting.path);
    QMap<QString, QString> names;
    for (const QString &path : std::as_const(paths)) {
        const QString entry = entryOf(path);
        if (!entry.isEmpty() && !names.contains(entry))
            names.insert(entry, readNode(client, nameKeyOf(entry)).text);
    }
    return names;
}

/// All ids that stand in a document, wherever they do.
QSet<QUuid> idsIn(const QString &text) {
    static const QRegularExpression form(QStringLiteral("[0-9a-f]{8}-(?:[0-9a-f]{4}-){3}[0-9a-f]{12}"),
                                         QRegularExpression::CaseInsensitiveOption);
    QSet<QUuid> ids;
    for (auto match = form.globalMatch(text); match.hasNext();)
        ids.insert(QUuid(match.next().captured()));
    return ids;
}

/// Those of them that did not stand before, and whose ids the document does not give.
QSet<QString> madeUpEntries(const ImportPlan &plan, const Document &document, TessaroClient &client) {
    const auto isNew = [&](const QString &entry) {
        const auto change = plan.changes.byPath().constFind(entry);
        return change == plan.changes.byPath().cend() ? readNode(client, entry).isAbsent() : change->before.isAbsent();
    };
    QSet<QString> madeUp;
    for (auto entry = plan.entryNames.keyBegin(); entry != plan.entryNames.keyEnd(); ++entry)
        if (!document.contents.entries.contains(*entry) && !idOf(*entry).isNull() && isNew(*entry))
            madeUp.insert(*entry);
    if (madeUp.isEmpty())
        return madeUp;

    const QSet<QUuid> given = idsIn(document.text);
    for (auto entry = madeUp.begin(); entry != madeUp.end();)
        entry = given.contains(idOf(*entry)) ? madeUp.erase(entry) : std::next(entry);
    return madeUp;
}

} // namespace

SettingCounts countsOf(const ImportPlan &plan) {
    SettingCounts counts;
    for (const Change &change : plan.changes.byPath())
        if (change.before.isKey() && change.after.isKey())
            ++counts.changed;
        else if (change.after.isKey())
            ++counts.made;
        else if (change.before.isKey())
            ++counts.deleted;
    counts.unknown = plan.unknown.size();
    return counts;
}

QStringList changingSections(const ImportPlan &plan) {
    QSet<QString> changing;
    for (auto path = plan.changes.byPath().keyBegin(); path != plan.changes.byPath().keyEnd(); ++path)
        changing.insert(sectionOf(*path));
    QStringList sections;
    for (const QString &section : plan.sections)
        if (changing.remove(section))
            sections.append(section);
    return sections;
}

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

    plan.creations = client.creations();
    plan.changes = client.settle();
    if (!plan.isEmpty())
        requireForesight(client, plan.changes, current.view);
    plan.entryNames = entryNames(plan, client);
    plan.madeUpEntries = madeUpEntries(plan, document, client);
    plan.entries = entryChanges(plan.changes, plan.madeUpEntries);
    return plan;
}

} // namespace quendar
