// SPDX-License-Identifier: MIT
/// Whose command it is.
#pragma once

#include "trial/changerecord.h"

namespace quendar {

/// As far as user and environment tell.
ChangeRecord::Origin originOfThisProcess();

} // namespace quendar
