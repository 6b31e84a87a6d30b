// SPDX-License-Identifier: MIT
/// `quendar-change revert`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Puts back the change that is open or was kept last, and prints it. Returns the exit status. Throws Error where there
/// is nothing to put back.
int runRevert(const CommandLine &commandLine);

} // namespace quendar
