// SPDX-License-Identifier: MIT
/// `quendar-change resume`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Goes on with what was interrupted, and prints the change. Returns the exit status. Throws Error.
int runResume(const CommandLine &commandLine);

} // namespace quendar
