// SPDX-License-Identifier: MIT
/// The process that goes on with a change when nobody else does.
#pragma once

#include "trial/statefolder.h"

namespace quendar {

/// Whether a guard watches the change @p id.
bool isGuarded(const StateFolder &folder, const QString &id);

/// Starts a guard for the change @p id, unless it has one, and waits until it watches. Throws Error when none does
/// within seconds.
void requireGuard(const StateFolder &folder, const QString &id);

/// Watches the change that is open, as soon as no other guard does, until it is not open any more: takes over whenever
/// nobody has the lock. Throws Error for a state folder that cannot be used.
void guardChange(const StateFolder &folder);

} // namespace quendar
