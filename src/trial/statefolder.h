// SPDX-License-Identifier: MIT
/// Where changes are kept.
#pragma once

#include "planning/changeset.h"
#include "trial/changerecord.h"

#include <QtCore/QVector>

#include <optional>

namespace quendar {

/// The folder /var/lib/quendar-change, or the one that QUENDAR_CHANGE_STATE names. It holds the record of the change
/// that is open or was last, those of earlier ones, and journals: what stands at each path of a change, before and
/// after. All that is written is on the disk when a function returns, or Error is thrown; only who has the lock may
/// write. What is damaged, not this user's own, or of a newer version is an Error that says what to do.
class StateFolder {
public:
    StateFolder();

    /// Makes it where it is missing, in a folder that is there. Throws Error when that fails, or others can write in
    /// it.
    void make() const;

    bool exists() const;

    /// Whether this user can look into it.
    bool isReadable() const;

    QString lockPath() const { return inFolder("lock"); }
    QString guardLockPath() const { return inFolder("guard.lock"); }
    const QString &path() const { return folder; }

    /// That of the change that is open or was last; nothing where there was none yet.
    std::optional<ChangeRecord> record() const;
    void write(const ChangeRecord &record) const;

    /// Puts the last change's record among those of earlier ones, of which the oldest go, but for the one whose journal
    /// is kept.
    void archive() const;

    /// The last twenty, the latest first.
    QVector<ChangeRecord> history() const;

    /// That of the change that is open or was last, be it among those of earlier ones.
    std::optional<ChangeRecord> last() const;

    /// The number of the latest change; 0 where there was none yet.
    int lastNumber() const;

    /// That of the change @p id. Throws Error where there is none.
    ChangeRecord recordOf(const QString &id) const;

    /// Removes what a process that was killed has left half-written, as far as that goes.
    void removeUnfinished() const;

    /// Of the change @p id, be it open or kept; nothing where there is none.
    std::optional<ChangeSet> journalOf(const QString &id) const;

    /// The same. Throws Error where there is none.
    ChangeSet requireJournalOf(const QString &id) const;

    /// Writes that of an open change. Throws Error also for what would not come back from it.
    void writeJournal(const QString &id, const ChangeSet &changes) const;

    /// Has `record` say from now on that the open change @p id is in @p state, being or been put back, until another
    /// record is written. Renames its journal, and so takes no room on the disk.
    void mark(const QString &id, ChangeState state) const;

    /// Whether it does.
    bool isMarked() const;

    /// Asks whoever runs the check of the change @p id to put it back instead; may be called without the lock, and is
    /// lost in a restart.
    void wantPutBack(const QString &id) const;
    bool isPutBackWanted(const QString &id) const;

    /// The id of the change whose journal is kept; null where there is none.
    QString keptId() const;

    /// Keeps the journal of @p record, which is not open any more, in the place of the one that was kept, or removes
    /// it.
    void tidyUp(const ChangeRecord &record) const;

    /// Removes the journal that is kept.
    void forgetKept() const;

private:
    QString inFolder(const char *name) const { return folder + QLatin1Char('/') + QLatin1String(name); }
    QString journalPath() const { return inFolder("journal.json"); }
    QString markPath(ChangeState state) const;
    QStringList journalPaths() const;
    QString keptPath() const { return inFolder("kept.json"); }
    QString recordPath() const { return inFolder("state.json"); }
    QString historyPath() const { return inFolder("history"); }
    QString wishPath() const { return inFolder("revert-wanted"); }
    QString earlierPath(const QString &id) const;
    QStringList earlierIds() const;

    QString folder;
};

} // namespace quendar
