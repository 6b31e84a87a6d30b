// SPDX-License-Identifier: MIT
/// Going on with a change that somebody else has left.
#pragma once

#include "trial/trial.h"

namespace quendar {

// What cannot be done at the moment is said on standard error; the change is open then.

/// Goes on with what was interrupted, and leaves what is open afterwards to a guard. Throws Error where nothing is
/// open.
void resumeShown(Trial &trial, const StateFolder &folder);

/// Sees to it that a guard watches the change that is open, if there is one.
void leaveToGuard(const Trial &trial, const StateFolder &folder);

} // namespace quendar
