// SPDX-License-Identifier: MIT
#include "change/revertcommand.h"

#include "change/changeoutput.h"
#include "change/conclusion.h"
#include "change/exitstatus.h"
#include "change/progress.h"
#include "change/standardstreams.h"
#include "report/error.h"

#include <cstdio>

namespace quendar {

namespace {

/// After which a wait is worth a word.
constexpr std::chrono::milliseconds quietWait = std::chrono::seconds(2);

Error nothingToPutBack() {
    return Error(QStringLiteral("nothing to put back"));
}

/// Where somebody is at work on the change @p meant, they are told that it is to be put back.
FileLock patientLock(const StateFolder &folder, const std::optional<ChangeRecord> &meant = std::nullopt) {
    std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), quietWait);
    if (lock)
        return std::move(*lock);
    std::fputs("waiting for who is at work on the change\n", stderr);
    if (meant && meant->isOpen())
        folder.wantPutBack(meant->id);
    return FileLock::waitedFor(folder.lockPath());
}

int statusOf(const ChangeRecord &record) {
    if (record.isOpen())
        return exitstatus::unfinished;
    const bool isWhole = record.conflicts.isEmpty() && unapplied(record.putBackResults).isEmpty();
    return isWhole ? exitstatus::done : exitstatus::putBack;
}

/// Opens the change that was kept last, and is @p id unless that is empty.
void reopenKept(const QString &id, Trial &trial, const StateFolder &folder) {
    trial.resume();
    const QString kept = folder.keptId();
    require(!kept.isEmpty() && (id.isEmpty() || id == kept), nothingToPutBack());
    trial.reopen(folder.recordOf(kept));
}

Conclusion putBack(const CommandLine &commandLine, const StateFolder &folder) {
    const QString id = commandLine.operand;
    const auto means = [&id](const std::optional<ChangeRecord> &one) { return one && (id.isEmpty() || id == one->id); };
    const std::optional<ChangeRecord> before = folder.record();
    const FileLock lock = patientLock(folder, means(before) ? before : std::nullopt);
    ShownProgress progress;
    Trial trial(folder, lock, progress);
    const std::optional<ChangeRecord> &record = trial.record();
    const bool isMeant = means(record);
    const bool wasOpen = before && before->isOpen() && record && before->id == record->id;
    if (isMeant && wasOpen && record->state == ChangeState::Reverted)
        return {*record, statusOf(*record), {}}; // while this one waited for the lock

    if (trial.isOpen() && !isMeant)
        throw Error(QStringLiteral("another change is open: ") + record->id);
    const QString error = stepOrLeaveToGuard(trial, folder, [&] {
        if (!trial.isOpen())
            reopenKept(id, trial, folder);
        if (commandLine.has(option::force))
            trial.force();
        if (commandLine.has(option::noReboot))
            trial.holdBackRestart();
        trial.putBackByCommand();
    });
    return {*record, statusOf(*record), error};
}

void forgetKept(const StateFolder &folder) {
    const FileLock lock = patientLock(folder);
    const std::optional<ChangeRecord> last = folder.record();
    if (last && last->isOpen() && last->id == folder.keptId())
        throw Error(QStringLiteral("the change %1 is being put back, and needs its journal").arg(last->id));
    folder.forgetKept();
}

} // namespace

int runRevert(const CommandLine &commandLine) {
    const StateFolder folder;
    require(folder.last().has_value(), nothingToPutBack());
    if (commandLine.has(option::forget)) {
        forgetKept(folder);
        printNoChange(commandLine, "No change can be put back any more");
        return exitstatus::done;
    }
    ignoreStopKey();
    return printConclusion(commandLine, putBack(commandLine, folder), folder);
}

} // namespace quendar
