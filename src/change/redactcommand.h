// SPDX-License-Identifier: MIT
/// `quendar-change redact`
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Writes the document without its secrets, and prints what was left out. Returns the exit status. Throws Error.
int runRedact(const CommandLine &commandLine);

} // namespace quendar
