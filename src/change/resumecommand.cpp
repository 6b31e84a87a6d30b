// SPDX-License-Identifier: MIT
#include "change/resumecommand.h"

#include "change/changeoutput.h"
#include "change/conclusion.h"
#include "change/exitstatus.h"
#include "change/progress.h"
#include "change/standardstreams.h"

namespace quendar {

namespace {

/// Who has the lock for longer is at work on the change.
constexpr std::chrono::milliseconds lockPatience = std::chrono::seconds(2);

/// Returns what is left to the guard.
QString resume(const StateFolder &folder) {
    const std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (!lock)
        return {};
    ShownProgress progress;
    Trial trial(folder, *lock, progress);
    return stepOrLeaveToGuard(trial, folder, [&trial] { trial.resume(); });
}

} // namespace

int runResume(const CommandLine &commandLine) {
    const StateFolder folder;
    ignoreStopKey();
    const QString error = folder.exists() ? resume(folder) : QString();
    const std::optional<ChangeRecord> last = folder.last();
    if (last)
        return printConclusion(commandLine, {*last, exitstatus::done, error}, folder);
    printNoChange(commandLine, noChangeYet);
    return exitstatus::done;
}

} // namespace quendar
