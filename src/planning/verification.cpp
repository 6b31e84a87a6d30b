// SPDX-License-Identifier: MIT
#include "planning/verification.h"

#include "document/elements.h"
#include "planning/documentsettings.h"
#include "planning/importplan.h"
#include "planning/places.h"
#include "planning/planningclient.h"
#include "registry/childrencache.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"
#include "stages/exportsettings.h"

#include <QtCore/QHash>
#include <QtCore/QUuid>

#include <algorithm>

namespace quendar {

namespace {

QString foldedAndTrimmed(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text.trimmed();
}

/// What became of the text of a key, if only its white space differs.
QString whiteSpaceReason(const QString &before, const QString &after) {
    if (after == before.trimmed())
        return QStringLiteral("white space at the ends is removed");
    if (after == foldedAndTrimmed(before))
        return QStringLiteral("a carriage return becomes a line feed");
    return {};
}

/// The settings of the document that an export gives afterwards.
class Returned {
public:
    explicit Returned(const QByteArray &document) : read(readSettings(decodedDocument(document))) {
        for (const DocumentSetting &setting : read.settings)
            texts.insert(setting.path, setting.text);
        for (const DocumentEntry &entry : read.entries)
            entries.insert(known(entry.path, entry.name), entry.path);
    }

    bool contains(const QString &path) const { return texts.contains(path); }
    QString text(const QString &path) const { return texts.value(path); }
    bool isDirectory(const QString &path) const { return read.directories.contains(path); }

    /// The entries of that name beside the one at @p path.
    QStringList namesakes(const QString &path, const QString &name) const { return entries.values(known(path, name)); }

private:
    static QPair<QString, QString> known(const QString &path, const QString &name) {
        return {parentIn(path).toString(), name};
    }

    const DocumentSettings read;
    QHash<QString, QString> texts;
    QMultiHash<QPair<QString, QString>, QString> entries; // by directory and name
};

class Comparison {
public:
    Comparison(const Document &document, TessaroClient &registry, const ImportPlan &import)
        : own(readSettings(document.text)), returned(exportSettings(registry).document), client(registry),
          plan(import) {
        findPrinters();
        for (const DocumentSetting &setting : own.settings)
            ++times[{idlessEntryOf(setting), setting.path}];
        for (const QString &entry : plan.madeUpEntries)
            if (!isInPrinter(entry))
                madeUp.insert(entry);
    }

    /// Looks for all that the document holds in the one that comes back.
    void compareSettings() {
        for (const DocumentSetting &setting : own.settings) {
            if (setting.entry >= 0 && setting.path == nameKeyOf(own.entries.at(setting.entry).path))
                named.insert(setting.entry);
            compare(setting);
        }
        for (const QString &session : std::as_const(madeUp))
            result.altered.insert(session, QStringLiteral("it has no id: each import makes up another one"));
    }

    /// Of a document that this device has exported, whatever changes got lost on the way.
    void takeChangesForLosses() {
        for (auto change = plan.changes.byPath().cbegin(); change != plan.changes.byPath().cend(); ++change) {
            const QString &path = change.key();
            if (!change->before.isKey() || result.lost.contains(path) || result.altered.contains(path))
                continue;
            if (change->after.isKey())
                result.altered.insert(path, whiteSpaceReason(change->before.text, change->after.text));
            else
                result.lost.insert(path, isEntryGone(path) ? QStringLiteral("it is deleted with its session or printer")
                                                           : QString());
        }
    }

    void listWhatIsNotCarried() {
        visitNodes(
            client, viewRoot(),
            [this](const QString &path, const Node &node) {
                const bool isMade =
                    plan.changes.byPath().contains(path) && plan.changes.byPath()[path].before.isAbsent();
                if (node.isKey() && !isMade && !carried.contains(path))
                    result.notCarried.append(path);
            });
    }

    Verification result;

private:
    /// A printer is known by its name, so its id in the registry may be in any form; a reader of a document knows one.
    void findPrinters() {
        const QString directory = childKey(childKey(viewRoot(), element::printerSection), QStringLiteral("printers"));
        ChildrenCache cache;
        for (const QString &path : entriesOf(directory, readChildren(client, cache, directory)))
            printers.insert(childKey(directory, QUuid(nameIn(path).toString()).toString()), path);
    }

    QString inRegistry(const QString &place) const {
        const QString entry = entryOf(place);
        return printers.value(entry, entry) + place.mid(entry.size());
    }

    void compare(const DocumentSetting &setting) {
        const QStringList places = placesOf(setting);
        const bool isBlank = setting.text.trimmed().isEmpty();
        QString place = places.first();
        for (const QString &candidate : places) {
            carried.insert(inRegistry(candidate));
            if (isBlank && returned.isDirectory(candidate))
                return;
            if (returned.contains(candidate))
                place = candidate;
        }
        ++result.settings;
        const auto comesBack = [&](const QString &path) {
            return returned.contains(path) && returned.text(path) == setting.text;
        };
        if (std::any_of(places.cbegin(), places.cend(), comesBack))
            return;
        if (returned.contains(place))
            result.altered.insert(inRegistry(place), alterationOf(setting, place));
        else
            result.lost.insert(inRegistry(place), lossOf(setting, inRegistry(place)));
    }

    /// Where the text of @p setting may have gone: a printer is known by its name, a session without an id gets one.
    QStringList placesOf(const DocumentSetting &setting) const {
        if (setting.entry < 0)
            return {setting.path};
        const DocumentEntry &entry = own.entries.at(setting.entry);
        const bool hasId = idlessEntryOf(setting) < 0;
        const bool isPrinter = isInPrinter(entry.path);
        QStringList places;
        for (const QString &namesake : returned.namesakes(entry.path, entry.name))
            if (isPrinter || (!hasId && madeUp.contains(namesake)))
                places.append(namesake + setting.path.mid(entry.path.size()));
        return places.isEmpty() ? QStringList(setting.path) : places;
    }

    QString alterationOf(const DocumentSetting &setting, const QString &place) const {
        const QString reason = whiteSpaceReason(setting.text, returned.text(place));
        if (!reason.isNull())
            return reason;
        if (setting.pieces > 1)
            return QStringLiteral("it is in pieces, of which the last one stays");
        if (times.value({idlessEntryOf(setting), setting.path}) > 1)
            return QStringLiteral("another setting of that name follows");
        return isBeforeName(setting) ? beforeName() : QString();
    }

    QString lossOf(const DocumentSetting &setting, const QString &place) const {
        if (isBeforeName(setting))
            return beforeName();
        if (isEntryGone(place))
            return QStringLiteral("its session or printer is not there afterwards");
        return readNode(client, place).isKey() ? QStringLiteral("it belongs to the device: no export holds it")
                                               : QStringLiteral("it is not known here");
    }

    /// The position of the entry that @p setting is in, if that has no id: it shares its path with others. Otherwise
    /// -1.
    int idlessEntryOf(const DocumentSetting &setting) const {
        const bool isIdless =
            setting.entry >= 0 && QUuid(nameIn(own.entries.at(setting.entry).path).toString()).isNull();
        return isIdless ? setting.entry : -1;
    }

    /// Whether @p setting, which is compared now, stands in a printer in front of its name.
    bool isBeforeName(const DocumentSetting &setting) const {
        return setting.entry >= 0 && isInPrinter(setting.path) && !named.contains(setting.entry);
    }

    static QString beforeName() { return QStringLiteral("it is not known before the printer's name is read"); }

    bool isEntryGone(const QString &path) const {
        const QString entry = entryOf(path);
        return !entry.isEmpty() && readNode(client, entry).isAbsent();
    }

    const DocumentSettings own;
    const Returned returned;
    TessaroClient &client;
    const ImportPlan &plan;
    QHash<QPair<int, QString>, int> times; // how often each is in the document: entry without an id, and path
    QHash<QString, QString> printers;      // their paths in the registry, by those that a document's reader gives
    QSet<int> named;                       // the entries whose names have been met
    QSet<QString> madeUp;                  // sessions
    QSet<QString> carried;                 // paths that the document sets
};

} // namespace

Verification verifyDocument(const Document &document) {
    PlanningClient client;
    const ImportPlan plan = planImport(document, client);
    Comparison comparison(document, client, plan);
    comparison.compareSettings();
    if (document.bytes == plan.current)
        comparison.takeChangesForLosses();
    comparison.listWhatIsNotCarried();
    return comparison.result;
}

} // namespace quendar
