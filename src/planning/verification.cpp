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
    }

    bool contains(const QString &path) const { return texts.contains(path); }
    QString text(const QString &path) const { return texts.value(path); }
    bool isDirectory(const QString &path) const { return read.directories.contains(path); }

    const QVector<DocumentEntry> &entries() const { return read.entries; }

private:
    const DocumentSettings read;
    QHash<QString, QString> texts;
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
        findEntries();
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

    /// A printer is known by its name, a session without an id gets one. Several of one name come in the order in which
    /// they were made, behind those that stood before.
    void findEntries() {
        const auto known = [](const DocumentEntry &entry) {
            return QPair<QString, QString>(parentIn(entry.path).toString(), entry.name);
        };
        QHash<QPair<QString, QString>, QStringList> namesakes;
        for (const DocumentEntry &entry : returned.entries())
            if (isInPrinter(entry.path) || madeUp.contains(entry.path))
                namesakes[known(entry)].append(entry.path);
        QHash<QString, int> order;
        for (const QString &path : plan.creations)
            order.insert(path, order.size());
        for (QStringList &paths : namesakes)
            std::stable_sort(paths.begin(), paths.end(), [&](const QString &first, const QString &second) {
                return order.value(first, -1) < order.value(second, -1);
            });
        for (const DocumentEntry &entry : own.entries) {
            QStringList &paths = namesakes[known(entry)];
            const bool isFound = (isInPrinter(entry.path) || isIdless(entry)) && !paths.isEmpty();
            entryPlaces.append(isFound ? paths.takeFirst() : entry.path);
        }
    }

    void compare(const DocumentSetting &setting) {
        const QString place = placeOf(setting);
        const QString path = inRegistry(place);
        carried.insert(path);
        if (setting.text.trimmed().isEmpty() && returned.isDirectory(place))
            return;
        ++result.settings;
        if (!returned.contains(place))
            result.lost.insert(path, lossOf(setting, path));
        else if (returned.text(place) != setting.text)
            result.altered.insert(path, alterationOf(setting, place));
    }

    /// Where the text of @p setting goes.
    QString placeOf(const DocumentSetting &setting) const {
        if (setting.entry < 0)
            return setting.path;
        return entryPlaces.at(setting.entry) + setting.path.mid(own.entries.at(setting.entry).path.size());
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
        return setting.entry >= 0 && isIdless(own.entries.at(setting.entry)) ? setting.entry : -1;
    }

    static bool isIdless(const DocumentEntry &entry) { return QUuid(nameIn(entry.path).toString()).isNull(); }

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
    QStringList entryPlaces;               // of the document's entries: where they are afterwards
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
    comparison.result.isOwnExport = document.bytes == plan.current;
    if (comparison.result.isOwnExport)
        comparison.takeChangesForLosses();
    comparison.listWhatIsNotCarried();
    return comparison.result;
}

} // namespace quendar
