// SPDX-License-Identifier: MIT
#include "trial/changestatus.h"

#include "planning/restoration.h"
#include "report/error.h"
#include "trial/guard.h"

#include <tessaroclient.h>

namespace quendar {

namespace {

/// Those that there would be if the change that waits were put back now.
std::optional<QStringList> conflictsNow(const ChangeRecord &record, const StateFolder &folder) {
    try {
        TessaroClient client;
        const std::optional<ChangeSet> changes = folder.journalOf(record.id);
        if (changes)
            return restorationOf(*changes, client, Conflicts::LeftAlone).conflicts;
    } catch (const Error &) { // NOLINT(bugprone-empty-catch): all else is still worth telling
    }
    return std::nullopt;
}

} // namespace

ChangeStatus statusOf(const ChangeRecord &record, const StateFolder &folder) {
    const bool isWaiting = record.state == ChangeState::Trying;
    ChangeStatus status{record, std::nullopt, record.isOpen() && isGuarded(folder, record.id), record.conflicts};
    if (isWaiting) {
        status.remaining = record.remainingAt(BootMoment::now());
        status.conflicts = conflictsNow(record, folder);
    }
    return status;
}

} // namespace quendar
