// SPDX-License-Identifier: MIT
/// The commands that end a change, tell of it, or go on with it.
#pragma once

#include "change/commandline.h"

namespace quendar {

// Each prints the change and returns the exit status. They throw Error where there is nothing that they can do.

int runConfirm(const CommandLine &commandLine);
int runRevert(const CommandLine &commandLine);
int runResume(const CommandLine &commandLine);
int runStatus(const CommandLine &commandLine);

} // namespace quendar
