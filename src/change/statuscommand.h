// SPDX-License-Identifier: MIT
/// `quendar-change status`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Prints how a change stands, or what is remembered of all. Returns the exit status. Throws Error where there is no
/// such change.
int runStatus(const CommandLine &commandLine);

} // namespace quendar
