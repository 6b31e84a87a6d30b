// SPDX-License-Identifier: MIT
#include "planning/planningclient.h"

#include "document/elements.h"
#include "planning/foresight.h"
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
    const bool isPrinter = directory.name() == QLatin1String("printers") && section.name() == element::printerSection;
    return (isSession || isPrinter) && section.parent() == viewRoot();
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
    const bool isRefused = now.isDirectory() && isCommittedDirectory(path);
    const int status = TessaroClient::set(isRefused ? ViewKey(path).parent() : path, value, param);
    if (status != 0) {
        const bool isExplained =
            now.isAbsent() ? !readNode(*this, ViewKey(path).parent()).isDirectory() : now.isDirectory();
        require(isExplained, TessaroError(path, status));
        return status;
    }
    changes.record(path, now, wanted);
    remember(Operation::Set, path, value);
    return status;
}

int PlanningClient::commit(const QString &path) {
    const auto cover = [this](auto first, auto last) {
        std::for_each(first, last, [this](const auto &entry) { operations[entry.second].isCommitted = true; });
        uncommitted.erase(first, last);
    };
    cover(uncommitted.lower_bound(path), uncommitted.upper_bound(path));
    // "0" follows "/"
    cover(uncommitted.lower_bound(path + QLatin1Char('/')), uncommitted.lower_bound(path + QLatin1Char('0')));
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

    QStringList made;
    visitNodes(*this, topmost, [&](const QString &visited, const Node &node) {
        changes.record(visited, {}, node);
        made.append(visited);
    });
    require(made.contains(path), impossibleToPlan(QStringLiteral("the registry does not show what is pending"), path));
    // A library that fills entries only when they are committed would have all their settings shown as unknown.
    if (changes.byPath().value(path).before.isDirectory())
        requireFresh(path);
    const bool isExpectingDefaults = isInSectionOfEntries(path) && !isMade(ViewKey(path).parent().parent());
    require(made.last() != path || !isExpectingDefaults,
            impossibleToPlan(QStringLiteral("the registry fills a new entry with no settings"), path));
    remember(Operation::Create, path);
    return status;
}

int PlanningClient::del(const QString &path) {
    std::vector<std::pair<QString, Node>> standing;
    visitNodes(*this, path, [&](const QString &visited, const Node &node) { standing.emplace_back(visited, node); });
    const int status = TessaroClient::del(path);
    require(status == 0 || standing.empty(), TessaroError(path, status));
    for (const auto &[deleted, node] : standing)
        changes.record(deleted, node, {});
    if (status == 0)
        remember(Operation::Delete, path);
    return status;
}

const ChangeSet &PlanningClient::settle() {
    if (!uncommitted.empty()) {
        rollback(QString());
        requireDropped(*this, changes);
        const QVector<Operation> all = std::exchange(operations, {});
        uncommitted.clear();
        changes = {};
        for (const Operation &operation : all)
            if (operation.isCommitted)
                repeat(operation);
    }
    return changes;
}

void PlanningClient::remember(Operation::Kind kind, const QString &path, const QString &value) {
    uncommitted.emplace(path, operations.size());
    operations.append({kind, path, value, false});
}

/// Whether what stands at @p path did not stand there at first.
bool PlanningClient::isMade(const QString &path) const {
    const auto change = changes.byPath().constFind(path);
    return change != changes.byPath().cend() && change->before.isAbsent();
}

/// Whether the directory at @p path, which is empty, was made and then committed.
bool PlanningClient::isCommittedDirectory(const QString &path) const {
    for (auto operation = operations.crbegin(); operation != operations.crend(); ++operation) {
        if (operation->kind == Operation::Delete && ViewKey(operation->path).covers(path))
            return false;
        if (operation->kind == Operation::Create && operation->isCommitted && ViewKey(path).covers(operation->path))
            return true;
    }
    return false;
}

/// Whether the entry at @p path, which was deleted and made again, is as new as another one beside it.
void PlanningClient::requireFresh(const QString &path) {
    const QString other = childKey(ViewKey(path).parent(), QUuid::createUuid().toString());
    TessaroClient::create(other, RegTypeString);
    const bool isFresh = contentsOf(*this, path) == contentsOf(*this, other);
    TessaroClient::del(other);
    require(isFresh, impossibleToPlan(QStringLiteral("the registry brings back what was deleted"), path));
}

void PlanningClient::repeat(const Operation &operation) {
    int status = 0;
    switch (operation.kind) {
    case Operation::Set:
        status = set(operation.path, operation.value, RegParamValue);
        break;
    case Operation::Create:
        status = create(operation.path, RegTypeString);
        break;
    case Operation::Delete:
        status = del(operation.path);
        break;
    }
    if (status != 0)
        throw TessaroError(operation.path, status);
    commit(operation.path);
}

} // namespace quendar
