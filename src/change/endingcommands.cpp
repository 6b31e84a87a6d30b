// SPDX-License-Identifier: MIT
#include "change/endingcommands.h"

#include "change/changeoutput.h"
#include "change/exitstatus.h"
#include "change/failure.h"
#include "change/progress.h"
#include "change/resumption.h"
#include "change/standardstreams.h"
#include "report/error.h"
#include "trial/trial.h"

#include <algorithm>
#include <cstdio>

namespace quendar {

namespace {

/// Who has the lock for longer is at work on the change.
constexpr std::chrono::milliseconds lockPatience = std::chrono::seconds(2);

constexpr char noChangeYet[] = "No change was made here yet";

class ShownProgress : public TrialObserver {
public:
    void applying(int number, int count, const QString &section, std::chrono::seconds elapsed) override {
        progress.show(number, count, section, elapsed);
    }

    void applied() override { progress.clear(); }

private:
    Progress progress;
};

Error noSuchChange(const QString &id) {
    return Error(QStringLiteral("no such change: ") + id);
}

Error nothingToPutBack() {
    return Error(QStringLiteral("nothing to put back"));
}

std::optional<ChangeRecord> recordOf(const StateFolder &folder, const QString &id) {
    const QVector<ChangeRecord> records = folder.history();
    const auto found =
        std::find_if(records.cbegin(), records.cend(), [&id](const ChangeRecord &record) { return record.id == id; });
    return found == records.cend() ? std::nullopt : std::optional(*found);
}

/// The record of @p id. Throws Error where there is none.
ChangeRecord requiredRecord(const StateFolder &folder, const QString &id) {
    const std::optional<ChangeRecord> record = recordOf(folder, id);
    require(record.has_value(), noSuchChange(id));
    return *record;
}

Error tooEarly(const ChangeRecord &record) {
    QString reason = QStringLiteral("it is still being applied");
    if (record.isRestartAwaited)
        reason = QStringLiteral("the device has not restarted yet");
    else if (record.state == ChangeState::Trying)
        reason = QStringLiteral("its check has not passed yet");
    return Error(QStringLiteral("impossible to confirm %1: %2").arg(record.id, reason));
}

/// What `confirm` comes to for a change in that state.
int confirmationOf(const CommandLine &commandLine, const StateFolder &folder, const ChangeRecord &record) {
    switch (record.state) {
    case ChangeState::Planned:
    case ChangeState::Applying:
    case ChangeState::Trying:
        throw tooEarly(record);
    case ChangeState::Failed:
        throw Error(QStringLiteral("the change %1 was never made: %2").arg(record.id, record.reason));
    case ChangeState::Confirmed:
    case ChangeState::Reverting:
    case ChangeState::Reverted:
        break;
    }
    printOutcome(commandLine, statusOf(record, folder));
    return record.state == ChangeState::Confirmed ? exitstatus::done : exitstatus::putBack;
}

int statusAfterPutBack(const ChangeRecord &record) {
    if (record.isOpen())
        return exitstatus::unfinished;
    const bool isWhole = record.conflicts.isEmpty() && unapplied(record.putBackResults).isEmpty();
    return isWhole ? exitstatus::done : exitstatus::putBack;
}

/// The change that is open or was last. One that was kept may be open again, and for a moment, as the next one begins,
/// the last one is among the earlier ones.
void printLast(const CommandLine &commandLine, const StateFolder &folder) {
    std::optional<ChangeRecord> last = folder.record();
    if (!last) {
        const QVector<ChangeRecord> records = folder.history();
        last = records.isEmpty() ? std::nullopt : std::optional(records.first());
    }
    if (last)
        printChange(commandLine, statusOf(*last, folder));
    else
        printNoChange(commandLine, noChangeYet);
}

/// Waits for the lock, and says so where that takes its time.
FileLock patientLock(const StateFolder &folder) {
    std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (lock)
        return std::move(*lock);
    std::fputs("waiting for who is at work on the change\n", stderr);
    return FileLock::waitedFor(folder.lockPath());
}

/// Puts back the change that is open; what cannot be at the moment is left to the guard.
int putBackShown(const CommandLine &commandLine, Trial &trial, const StateFolder &folder) {
    if (commandLine.has(option::force))
        trial.force();
    if (commandLine.has(option::noReboot))
        trial.holdBackRestart();
    try {
        trial.putBackByCommand();
    } catch (const Error &error) {
        if (!trial.isOpen())
            throw;
        printError(error.message());
        leaveToGuard(trial, folder);
    }
    printOutcome(commandLine, statusOf(*trial.record(), folder));
    return statusAfterPutBack(*trial.record());
}

int forgetKept(const CommandLine &commandLine, const StateFolder &folder) {
    const FileLock lock = patientLock(folder);
    const std::optional<ChangeRecord> last = folder.record();
    if (last && last->isOpen() && last->id == folder.keptId())
        throw Error(QStringLiteral("the change %1 is being put back").arg(last->id));
    folder.forgetKept();
    printNoChange(commandLine, "No change can be put back any more");
    return exitstatus::done;
}

} // namespace

int runConfirm(const CommandLine &commandLine) {
    const StateFolder folder;
    const QString id = commandLine.operand;
    requiredRecord(folder, id);
    const std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (!lock)
        return confirmationOf(commandLine, folder, requiredRecord(folder, id));

    TrialObserver nobody;
    Trial trial(folder, *lock, nobody);
    resumeShown(trial, folder);
    const std::optional<ChangeRecord> &record = trial.record();
    if (!record || record->id != id || !record->isConfirmable())
        return confirmationOf(commandLine, folder, requiredRecord(folder, id));
    trial.confirm();
    return confirmationOf(commandLine, folder, *record);
}

int runRevert(const CommandLine &commandLine) {
    const StateFolder folder;
    const QString id = commandLine.operand;
    require(folder.record() || !folder.history().isEmpty(), nothingToPutBack());
    if (commandLine.has(option::forget))
        return forgetKept(commandLine, folder);

    ignoreStopKey();
    const FileLock lock = patientLock(folder);
    ShownProgress progress;
    Trial trial(folder, lock, progress);
    const bool isMeant = id.isEmpty() || (trial.record() && trial.record()->id == id);
    if (trial.isOpen() && isMeant)
        return putBackShown(commandLine, trial, folder);

    if (trial.isOpen())
        throw Error(QStringLiteral("another change is open: ") + trial.record()->id);
    trial.resume();
    const QString kept = folder.keptId();
    require(!kept.isEmpty() && (id.isEmpty() || id == kept), nothingToPutBack());
    trial.reopen(requiredRecord(folder, kept));
    leaveToGuard(trial, folder);
    return putBackShown(commandLine, trial, folder);
}

int runResume(const CommandLine &commandLine) {
    const StateFolder folder;
    const std::optional<FileLock> lock =
        folder.record() ? FileLock::tried(folder.lockPath(), lockPatience) : std::nullopt;
    if (lock) {
        ignoreStopKey();
        ShownProgress progress;
        Trial trial(folder, *lock, progress);
        resumeShown(trial, folder);
    }
    printLast(commandLine, folder);
    return exitstatus::done;
}

int runStatus(const CommandLine &commandLine) {
    const StateFolder folder;
    if (!commandLine.operand.isEmpty()) {
        printChange(commandLine, statusOf(requiredRecord(folder, commandLine.operand), folder));
        return exitstatus::done;
    }
    if (commandLine.has(option::all)) {
        QVector<ChangeStatus> statuses;
        for (const ChangeRecord &record : folder.history())
            statuses.append(statusOf(record, folder));
        printHistory(commandLine, statuses);
        return exitstatus::done;
    }
    printLast(commandLine, folder);
    return exitstatus::done;
}

} // namespace quendar
