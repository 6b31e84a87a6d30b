// SPDX-License-Identifier: MIT
/// `quendar-change apply` and `try`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Imports the document as one change, and prints what has become of it. Returns the exit status. Throws Error when
/// nothing was changed.
int runApply(const CommandLine &commandLine);

} // namespace quendar
