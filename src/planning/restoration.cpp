// SPDX-License-Identifier: MIT
#include "planning/restoration.h"

#include "registry/viewkey.h"
#include "report/error.h"

#include <tessaroclient.h>

#include <set>

namespace quendar {

namespace {

using Paths = std::set<QString>;

bool isAnyBelow(const QString &directory, const Paths &paths) {
    const QString prefix = directory + QLatin1Char('/');
    const auto first = paths.lower_bound(prefix);
    return first != paths.end() && first->startsWith(prefix);
}

/// Decides path by path what is put back.
class Decision {
public:
    Decision(const ChangeSet &made, TessaroClient &reader) : changes(made), client(reader) {
        for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change)
            look(change.key(), *change);
        isAnythingChanged = !changed.empty();
    }

    void leaveOthersAlone() {
        addForeign();
        for (auto path = changed.begin(); path != changed.end();) {
            const bool isBlocked = isDirectoryOfTheChange(*path) && isAnyBelow(*path, blocking);
            if (isBlocked)
                conflicts.insert(*path);
            path = isBlocked ? changed.erase(path) : std::next(path);
        }
    }

    void overwriteOthers() {
        changed.insert(conflicts.begin(), conflicts.end());
        conflicts.clear();
    }

    /// What lies below a key that somebody has put where a directory was cannot come back, and in a directory that
    /// somebody has deleted, only by force.
    void leaveWhatHasNoPlace(Conflicts rule) {
        for (auto path = changed.begin(); path != changed.end();) {
            const bool isMissing = !changes.byPath().value(*path).before.isAbsent() && !isStanding(client, *path);
            const bool isLost = isMissing && !hasPlace(*path, rule);
            if (isLost)
                conflicts.insert(*path);
            path = isLost ? changed.erase(path) : std::next(path);
        }
    }

    Restoration result() const {
        Restoration restoration{{}, {}, isAnythingChanged};
        for (const QString &path : changed)
            restoration.changes.copy(path, changes);
        for (const QString &path : conflicts)
            restoration.conflicts.append(path);
        return restoration;
    }

private:
    void look(const QString &path, const Change &change) {
        const Node now = readNode(client, path);
        if (now == change.after) {
            changed.insert(path);
        } else if (now != change.before) {
            conflicts.insert(path);
            if (!now.isAbsent())
                blocking.insert(path);
        }
    }

    bool isDirectoryOfTheChange(const QString &path) const {
        const auto change = changes.byPath().constFind(path);
        return change->after.isDirectory() && !change->before.isDirectory();
    }

    /// What stands in a directory of the change and is none of its paths.
    void addForeign() {
        QString seen; // the last directory that was looked through
        for (const QString &path : changed) {
            if (!isDirectoryOfTheChange(path) || (!seen.isNull() && ViewKey(seen).covers(path)))
                continue;
            seen = path;
            visitNodes(client, path, [this](const QString &visited, const Node & /*node*/) {
                if (!changes.byPath().contains(visited))
                    blocking.insert(visited);
            });
        }
    }

    bool hasPlace(const QString &path, Conflicts rule) const {
        for (ViewKey above = ViewKey(path).parent(); !above.isEmpty() && changed.count(above) == 0;
             above = above.parent()) {
            const Node node = readNode(client, above);
            if (!node.isAbsent() || rule == Conflicts::LeftAlone)
                return node.isDirectory();
        }
        return true;
    }

    const ChangeSet &changes;
    TessaroClient &client;
    Paths changed;
    Paths conflicts;
    Paths blocking; // what others have put where it would go with a directory
    bool isAnythingChanged = false;
};

/// Of the defaults in the new directory at @p path, leaves only those that are among @p kept.
void dropAllBut(TessaroClient &client, const ChangeSet &kept, const QString &path) {
    QStringList dropped;
    visitNodes(client, path, [&](const QString &visited, const Node & /*node*/) {
        if (!kept.byPath().contains(visited))
            dropped.append(visited);
    });
    for (const QString &visited : std::as_const(dropped))
        writeNode(client, visited, {});
}

} // namespace

Restoration restorationOf(const ChangeSet &changes, TessaroClient &client, Conflicts conflicts) {
    Decision decision(changes, client);
    if (conflicts == Conflicts::Overwritten)
        decision.overwriteOthers();
    else
        decision.leaveOthersAlone();
    decision.leaveWhatHasNoPlace(conflicts);
    return decision.result();
}

void writeSide(TessaroClient &client, const ChangeSet &changes, Node Change::*side) {
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        const Node &node = (*change).*side;
        writeNode(client, path, node);
        if (node.isDirectory())
            dropAllBut(client, changes, path);
    }
}

} // namespace quendar
