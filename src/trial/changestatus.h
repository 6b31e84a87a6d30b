// SPDX-License-Identifier: MIT
/// How a change stands at the moment.
#pragma once

#include "trial/statefolder.h"

#include <optional>

namespace quendar {

struct ChangeStatus {
    ChangeRecord record;
    std::optional<std::chrono::milliseconds> remaining; ///< until it is put back; nothing where there is no such time
    bool isWatched = false;                             ///< whether a guard watches it
    std::optional<QStringList> conflicts; ///< paths that are, or would be, left alone; nothing where it cannot be told
};

/// Looks at clock, guard and registry, without a lock; does not wait long for a registry that does not answer. Throws
/// Error for a guard's lock that cannot be used.
ChangeStatus statusOf(const ChangeRecord &record, const StateFolder &folder);

/// The helper that asks the registry: prints the conflicts that there would be if the change @p id were put back now,
/// or nothing where that cannot be told.
void listConflicts(const StateFolder &folder, const QString &id);

} // namespace quendar
