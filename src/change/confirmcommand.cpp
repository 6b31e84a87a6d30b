// SPDX-License-Identifier: MIT
#include "change/confirmcommand.h"

#include "change/conclusion.h"
#include "change/exitstatus.h"
#include "report/error.h"

namespace quendar {

namespace {

/// Who has the lock for longer is at work on the change.
constexpr std::chrono::milliseconds lockPatience = std::chrono::seconds(2);

Error tooEarly(const ChangeRecord &record) {
    QString reason = QStringLiteral("it is still being applied");
    if (record.isConfirmable())
        reason = QStringLiteral("somebody else is at work on it: give the command again");
    else if (record.isRestartAwaited)
        reason = QStringLiteral("the device has not restarted yet");
    else if (record.state == ChangeState::Trying)
        reason = QStringLiteral("its check has not passed yet");
    return Error(QStringLiteral("impossible to confirm %1: %2").arg(record.id, reason));
}

/// Throws Error for a change that has not come so far, or was never made.
Conclusion conclusionOf(const ChangeRecord &record, const QString &error = QString()) {
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
    return {record, record.state == ChangeState::Confirmed ? exitstatus::done : exitstatus::putBack, error};
}

Conclusion confirm(const QString &id, const StateFolder &folder) {
    const std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (!lock) {
        const ChangeRecord record = folder.recordOf(id);
        const bool isTooLate =
            record.isConfirmable() && record.remainingAt(BootMoment::now()) == std::chrono::milliseconds::zero();
        const QString late = QStringLiteral("too late: %1 is about to be put back").arg(id);
        return isTooLate ? Conclusion{record, exitstatus::putBack, late} : conclusionOf(record);
    }
    TrialObserver nobody;
    Trial trial(folder, *lock, nobody);
    const QString error = stepOrLeaveToGuard(trial, folder, [&trial] { trial.resume(); });
    const std::optional<ChangeRecord> &record = trial.record();
    if (!record || record->id != id)
        return conclusionOf(folder.recordOf(id), error);
    if (record->isConfirmable())
        trial.confirm();
    return conclusionOf(*record, error);
}

} // namespace

int runConfirm(const CommandLine &commandLine) {
    const StateFolder folder;
    folder.recordOf(commandLine.operand); // without one there may be no folder
    return printConclusion(commandLine, confirm(commandLine.operand, folder), folder);
}

} // namespace quendar
