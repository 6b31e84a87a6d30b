// SPDX-License-Identifier: MIT
/// The change of a device, from its plan to its end.
#pragma once

#include "document/document.h"
#include "trial/filelock.h"
#include "trial/storedchange.h"
#include "trial/trialobserver.h"

namespace quendar {

class PlanningClient;

/// What is asked for.
struct ChangeRequest {
    Document document;
    QString file; ///< its name, for people
    ChangeRecord::Origin origin;
    std::optional<std::chrono::seconds> confirmWithin; ///< nothing where nobody has to confirm it
    std::optional<ChangeRecord::Check> check;
    std::chrono::seconds applyLimit{};
    bool isRestartHeldBack = false;
    bool appliesAll = false; ///< also sections in which nothing changes
};

/// The one change that a device has open, or had last. Each step is on the disk before the next one; whoever is killed
/// in between can be followed by another process, which calls `resume`. All throw Error when a step cannot be done;
/// where the change is still open then, `resume` goes on with it.
class Trial {
public:
    /// @p held is the lock of @p stateFolder. All must live longer than this object.
    Trial(const StateFolder &stateFolder, const FileLock &held, TrialObserver &watcher);

    /// Nothing where there was none yet.
    const std::optional<ChangeRecord> &record() const { return change.value(); }

    bool isOpen() const { return change && change->isOpen(); }

    /// Imports a document as a new change; none may be open. False where there is nothing to do. Otherwise it waits for
    /// its confirmation, or was kept, or put back.
    bool import(const ChangeRequest &request);

    /// Goes on with what a kill or a restart has interrupted, and puts back what nobody has confirmed in time.
    void resume();

    /// Runs the check, if it is due, and keeps the change or puts it back.
    void check();

    /// Stores how much of the time has gone by, every few seconds.
    void keepTime();

    /// Keeps the change that waits; one of which nothing stands any more is put back.
    void confirm();

    /// Puts back the open change.
    void putBackByCommand();

    /// Opens @p kept again, a change whose journal is there, for `putBackByCommand`.
    void reopen(const ChangeRecord &kept);

    /// When the change is put back: has conflicts put back as well, and a restart held back.
    void force() { change->isForced = true; }
    void holdBackRestart() { change->isRestartHeldBack = true; }

private:
    bool prepare(const ChangeRequest &request, std::optional<PlanningClient> &client);
    bool prepareOnce(const ChangeRequest &request, PlanningClient &client);
    void begin(const ChangeRequest &request);
    QString commit(PlanningClient &client);
    void abandon(const QString &reason);
    QString apply();
    void wait();
    void startPostActionIfDue();
    void resumePostAction();
    bool noteRestart();
    void resumeWaiting(bool hasRestarted);
    void putBack(const QString &reason);
    void restore();
    bool standsAsBefore() const;

    const StateFolder &folder;
    const FileLock &lock;
    TrialObserver &observer;
    StoredChange change;
};

} // namespace quendar
