// SPDX-License-Identifier: MIT
#include "planning/planningclient.h"

#include "document/elements.h"
#include "planning/foresight.h"
#include "planning/restoration.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"

#include <QtCore/QUuid>

#include <algorithm>
#include <vector>

namespace quendar {

namespace {

/// Whether @p entry is a session or a printer where a section of the device has them. Elsewhere nobody expects
/// defaults.
bool isInSectionOfEntries(const ViewKey &entry) {
    const ViewKey directory = entry.parent();
    const ViewKey section = directory.parent();
    const bool isSession =
        directory.name() == QLatin1String("sessions") && element::sessionTypes().contains(section.name());
    return directory == printersPath() || (isSession && section.parent() == viewRoot());
}

/// The nodes below @p path, by their paths from there.
QMap<QString, Node> contentsOf(TessaroClient &client, const QString &path) {
    QMap<QString, Node> contents;
    visitNodes(client, path,
               [&](const QString &visited, const Node &node) { contents.insert(visited.mid(path.size()), node); });
    return contents;
}

} // namespace

int PlanningClient::set(const QString &path, const QString &value, const _RegEntryParam &param) {
    const Node now = readNode(*this, path);
    const Node wanted = {Node::Key, value};
    if (now == wanted)
        return 0;
    // A pending directory may become a key, one that was committed may not: the directory above answers as it would.
    const bool isRefused = now.isDirectory() && uncommitted.count(path) == 0;
    const int status = TessaroClient::set(isRefused ? ViewKey(path).parent() : path, value, param);
    if (status != 0) {
        const bool isExplained =
            now.isAbsent() ? !readNode(*this, ViewKey(path).parent()).isDirectory() : now.isDirectory();
        require(isExplained, TessaroError(path, status));
        return status;
    }
    note(path, now, wanted);
    return status;
}

int PlanningClient::commit(const QString &path) {
    const auto coverAll = [this](auto first, auto last) {
        std::for_each(first, last, [this](const QString &covered) { committed.copy(covered, changes); });
        const bool isAny = first != last;
        uncommitted.erase(first, last);
        return isAny;
    };
    const bool isCovered = coverAll(uncommitted.lower_bound(path), uncommitted.upper_bound(path));
    // "0" follows "/"
    const bool isCoveredBelow =
        coverAll(uncommitted.lower_bound(path + QLatin1Char('/')), uncommitted.lower_bound(path + QLatin1Char('0')));
    if (isCovered || isCoveredBelow)
        coverMissingAbove(path);
    return 0;
}

int PlanningClient::requestApply(const QString & /*section*/, const QString & /*trigger*/) {
    return 1;
}

int PlanningClient::create(const QString &path, const _RegEntryType &type) {
    ViewKey topmost;
    for (ViewKey at = path; !at.isEmpty() && !isStanding(*this, at); at = at.parent())
        topmost = at;
    const int status = TessaroClient::create(path, type);
    if (status != 0 || topmost.isEmpty()) {
        const bool isExplained = topmost.isEmpty() || readNode(*this, topmost.parent()).isKey();
        require(isExplained, TessaroError(path, status));
        return status;
    }

    const bool isMadeAgain = changes.byPath().value(path).before.isDirectory();
    QStringList made;
    visitNodes(*this, topmost, [&](const QString &visited, const Node &node) {
        note(visited, {}, node);
        made.append(visited);
    });
    require(made.contains(path), impossibleToPlan(QStringLiteral("the registry does not show what is pending"), path));
    if (isMadeAgain)
        requireFresh(path);
    // A library that fills entries only when they are committed would have all their settings shown as unknown.
    const bool isExpectingDefaults = isInSectionOfEntries(path) && !changes.makes(ViewKey(path).parent().parent());
    require(made.last() != path || !isExpectingDefaults,
            impossibleToPlan(QStringLiteral("the registry fills a new entry with no settings"), path));
    created.append(path);
    return status;
}

int PlanningClient::del(const QString &path) {
    std::vector<std::pair<QString, Node>> standing;
    visitNodes(*this, path, [&](const QString &visited, const Node &node) { standing.emplace_back(visited, node); });
    const int status = TessaroClient::del(path);
    require(status == 0 || standing.empty(), TessaroError(path, status));
    for (const auto &[deleted, node] : standing)
        note(deleted, node, {});
    return status;
}

const ChangeSet &PlanningClient::settle() {
    if (uncommitted.empty())
        return changes;
    const int status = rollback(QString());
    require(status == 0, TessaroError(viewRoot(), status));
    requireDropped(*this, changes);
    uncommitted.clear();
    changes = {};
    const ChangeSet kept = std::exchange(committed, {});
    writeSide(*this, kept, &Change::after);
    return changes;
}

void PlanningClient::carryOut() {
    const int status = TessaroClient::commit(viewRoot());
    require(status == 0, TessaroError(viewRoot(), status));
}

void PlanningClient::note(const QString &path, const Node &before, const Node &after) {
    changes.record(path, before, after);
    uncommitted.insert(path);
}

/// Whether the entry at @p path, which was deleted and made again, is as new as another one beside it.
void PlanningClient::requireFresh(const QString &path) {
    const QString other = childKey(ViewKey(path).parent(), QUuid::createUuid().toString());
    const auto requireDone = [&other](int status) { require(status == 0, TessaroError(other, status)); };
    requireDone(TessaroClient::create(other, RegTypeString));
    const bool isFresh = contentsOf(*this, path) == contentsOf(*this, other);
    requireDone(TessaroClient::del(other));
    require(isFresh, impossibleToPlan(QStringLiteral("the registry brings back what was deleted"), path));
}

/// A commit of @p path makes the directories above it that are missing, but nothing else of what is in these.
void PlanningClient::coverMissingAbove(const QString &path) {
    for (ViewKey at = ViewKey(path).parent(); !at.isEmpty(); at = at.parent())
        if (uncommitted.count(at) > 0 && isStanding(*this, at)) {
            committed.copy(at, changes);
            uncommitted.erase(at);
        }
}

} // namespace quendar
