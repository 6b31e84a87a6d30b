// SPDX-License-Identifier: MIT
/// `quendar-change plan`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Prints what an import of the document would do. Returns the exit status. Throws Error.
int runPlan(const CommandLine &commandLine);

} // namespace quendar
