// SPDX-License-Identifier: MIT
/// `quendar-change confirm`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Keeps the change that waits, and prints it. Returns the exit status. Throws Error where it cannot be confirmed.
int runConfirm(const CommandLine &commandLine);

} // namespace quendar
