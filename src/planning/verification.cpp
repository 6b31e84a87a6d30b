// SPDX-License-Identifier: MIT
#include "planning/verification.h"

#include "planning/documentsettings.h"
#include "planning/entryplaces.h"
#include "planning/importplan.h"
#include "planning/places.h"
#include "planning/planningclient.h"
#include "registry/viewpaths.h"
#include "stages/exportsettings.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

namespace quendar {

namespace {

/// What became of the text of a key, if only its white space differs.
QString whiteSpaceReason(const QString &before, const QString &after) {
    if (after == before.trimmed())
        return QStringLiteral("white space at the ends is removed");
    if (after == withLineFeeds(before).trimmed())
        return QStringLiteral("a carriage return becomes a line feed");
    return {};
}

bool isEntryGone(TessaroClient &client, const QString &path) {
    const QString entry = entryOf(path);
    return !entry.isEmpty() && readNode(client, entry).isAbsent();
}

/// The settings of the document that an export gives afterwards.
class Returned {
public:
    explicit Returned(const QByteArray &document) : read(readSettings(decodedDocument(document))) {
        for (const DocumentSetting &setting : read.settings)
            texts.insert(setting.path, setting.text);
    }

    bool contains(const QString &path) const { return texts.contains(path); }
    QString text(const QString &path) const { return texts.value(path); }
    bool isDirectory(const QString &path) const { return read.directories.contains(path); }

    const QVector<DocumentEntry> &entries() const { return read.entries; }

private:
    const DocumentSettings read;
    QHash<QString, QString> texts;
};

/// Says what becomes of each setting of a document.
class Comparison {
public:
    Comparison(const DocumentSettings &document, const ImportPlan &import, TessaroClient &registry)
        : own(document), plan(import), client(registry), returned(exportSettings(client).document),
          places(own.entries, returned.entries(), plan, client) {
        for (const DocumentSetting &setting : own.settings)
            ++times[{idlessEntryOf(setting), setting.path}];
    }

    Verification result() const {
        Verification found;
        QSet<QString> carried;
        for (const DocumentSetting &setting : own.settings) {
            const QString place = places.placeOf(setting);
            const QString path = places.inRegistry(place);
            carried.insert(path);
            if (setting.text.trimmed().isEmpty() && returned.isDirectory(place))
                continue;
            ++found.settings;
            if (!returned.contains(place))
                found.lost.insert(path, lossOf(setting, path));
            else if (returned.text(place) != setting.text)
                found.altered.insert(path, alterationOf(setting, place));
        }
        for (const QString &entry : plan.madeUpEntries)
            if (!isInPrinter(entry))
                found.altered.insert(entry, QStringLiteral("it has no id: each import makes up another one"));
        found.notCarried = keysBut(carried);
        return found;
    }

private:
    QString alterationOf(const DocumentSetting &setting, const QString &place) const {
        const QString reason = whiteSpaceReason(setting.text, returned.text(place));
        if (!reason.isNull())
            return reason;
        if (setting.pieces > 1)
            return QStringLiteral("it is in pieces, of which the last one stays");
        if (times.value({idlessEntryOf(setting), setting.path}) > 1)
            return QStringLiteral("another setting of that name follows");
        return isTooEarly(setting) ? tooEarly() : QString();
    }

    QString lossOf(const DocumentSetting &setting, const QString &path) const {
        if (isTooEarly(setting))
            return tooEarly();
        if (isEntryGone(client, path))
            return QStringLiteral("its session or printer is not there afterwards");
        return readNode(client, path).isKey() ? QStringLiteral("it belongs to the device: no export holds it")
                                              : QStringLiteral("it is not known here");
    }

    /// The position of the entry that @p setting is in, if that has no id: it shares its path with others. Otherwise
    /// -1.
    int idlessEntryOf(const DocumentSetting &setting) const {
        return setting.entry >= 0 && isIdless(own.entries.at(setting.entry)) ? setting.entry : -1;
    }

    static bool isTooEarly(const DocumentSetting &setting) { return setting.isBeforeName && isInPrinter(setting.path); }

    static QString tooEarly() { return QStringLiteral("it is not known before the printer's name is read"); }

    /// The keys of the device, but for those of @p carried and those that the import has made.
    QStringList keysBut(const QSet<QString> &carried) const {
        QStringList keys;
        visitNodes(client, viewRoot(), [&](const QString &path, const Node &node) {
            if (node.isKey() && !carried.contains(path) && !plan.changes.makes(path))
                keys.append(path);
        });
        return keys;
    }

    const DocumentSettings &own;
    const ImportPlan &plan;
    TessaroClient &client;
    const Returned returned;
    const EntryPlaces places;
    QHash<QPair<int, QString>, int> times; // how often each is in the document: entry without an id, and path
};

/// Adds to @p found, which is of a document that the device has exported, what else an import of it changes: that was
/// lost on the way.
Verification withChanges(Verification found, const ImportPlan &plan, TessaroClient &client) {
    for (auto change = plan.changes.byPath().cbegin(); change != plan.changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        if (!change->before.isKey() || found.lost.contains(path) || found.altered.contains(path))
            continue;
        if (change->after.isKey())
            found.altered.insert(path, whiteSpaceReason(change->before.text, change->after.text));
        else
            found.lost.insert(path, isEntryGone(client, path)
                                        ? QStringLiteral("it is deleted with its session or printer")
                                        : QString());
    }
    return found;
}

} // namespace

Verification verifyDocument(const Document &document) {
    PlanningClient client;
    const ImportPlan plan = planImport(document, client);
    const DocumentSettings settings = readSettings(document.text);
    Verification found = Comparison(settings, plan, client).result();
    found.isOwnExport = document.bytes == plan.current;
    return found.isOwnExport ? withChanges(found, plan, client) : found;
}

} // namespace quendar
