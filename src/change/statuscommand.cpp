// SPDX-License-Identifier: MIT
#include "change/statuscommand.h"

#include "change/changeoutput.h"
#include "change/exitstatus.h"

namespace quendar {

namespace {

void printAll(const CommandLine &commandLine, const StateFolder &folder) {
    QVector<ChangeStatus> statuses;
    for (const ChangeRecord &record : folder.history())
        statuses.append(statusOf(record, folder));
    printHistory(commandLine, statuses);
}

/// The one that is open, which may be older than others, or was last.
void printLast(const CommandLine &commandLine, const StateFolder &folder) {
    const std::optional<ChangeRecord> last = folder.last();
    if (last)
        printChange(commandLine, statusOf(*last, folder));
    else
        printNoChange(commandLine, noChangeYet);
}

} // namespace

int runStatus(const CommandLine &commandLine) {
    const StateFolder folder;
    if (commandLine.has(option::all))
        printAll(commandLine, folder);
    else if (commandLine.operand.isEmpty())
        printLast(commandLine, folder);
    else
        printChange(commandLine, statusOf(folder.recordOf(commandLine.operand), folder));
    return exitstatus::done;
}

} // namespace quendar
