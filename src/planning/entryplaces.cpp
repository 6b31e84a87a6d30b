// SPDX-License-Identifier: MIT
#include "planning/entryplaces.h"

#include "planning/places.h"
#include "registry/childrencache.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"

#include <algorithm>

namespace quendar {

namespace {

/// What entries that are known by their names are told by: their directory and their name.
using Identity = QPair<QString, QString>;

Identity identityOf(const QString &path, const QString &name) {
    return {parentIn(path).toString(), name};
}

/// The printers, and the sessions whose ids the import makes up. Several of one identity come in the order in which
/// they were made, behind those that stood before.
QHash<Identity, QStringList> knownByName(const QVector<DocumentEntry> &returned, const ImportPlan &plan) {
    QHash<Identity, QStringList> known;
    for (const DocumentEntry &entry : returned)
        if (isInPrinter(entry.path) || plan.madeUpEntries.contains(entry.path))
            known[identityOf(entry.path, entry.name)].append(entry.path);
    QHash<QString, int> order;
    for (const QString &path : plan.creations)
        order.insert(path, order.size());
    for (QStringList &paths : known)
        std::stable_sort(paths.begin(), paths.end(), [&](const QString &first, const QString &second) {
            return order.value(first, -1) < order.value(second, -1);
        });
    return known;
}

QHash<QString, QString> printersByDocumentPath(TessaroClient &client) {
    const QString directory = printersPath();
    QHash<QString, QString> printers;
    ChildrenCache cache;
    for (const QString &path : entriesOf(directory, readChildren(client, cache, directory)))
        printers.insert(childKey(directory, idOf(path).toString()), path);
    return printers;
}

} // namespace

EntryPlaces::EntryPlaces(const QVector<DocumentEntry> &document, const QVector<DocumentEntry> &returned,
                         const ImportPlan &plan, TessaroClient &client)
    : entries(document), printers(printersByDocumentPath(client)) {
    QHash<Identity, QStringList> known = knownByName(returned, plan);
    for (const DocumentEntry &entry : entries) {
        const QString path = entry.parent < 0
                                 ? entry.path
                                 : places.at(entry.parent) + entry.path.mid(entries.at(entry.parent).path.size());
        QStringList &found = known[identityOf(path, entry.name)];
        const bool isFound = (isInPrinter(path) || isIdless(entry)) && !found.isEmpty();
        places.append(isFound ? found.takeFirst() : path);
    }
}

QString EntryPlaces::placeOf(const DocumentSetting &setting) const {
    if (setting.entry < 0)
        return setting.path;
    return places.at(setting.entry) + setting.path.mid(entries.at(setting.entry).path.size());
}

QString EntryPlaces::inRegistry(const QString &place) const {
    const QString entry = entryOf(place);
    return printers.value(entry, entry) + place.mid(entry.size());
}

bool isIdless(const DocumentEntry &entry) {
    return idOf(entry.path).isNull();
}

} // namespace quendar
