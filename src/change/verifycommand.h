// SPDX-License-Identifier: MIT
/// `quendar-change verify`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Prints what would not come back of the document. Returns the exit status. Throws Error.
int runVerify(const CommandLine &commandLine);

} // namespace quendar
