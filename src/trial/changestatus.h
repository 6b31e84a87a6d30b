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

/// Looks at clock, guard and registry, without a lock.
ChangeStatus statusOf(const ChangeRecord &record, const StateFolder &folder);

} // namespace quendar
