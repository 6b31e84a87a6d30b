// SPDX-License-Identifier: MIT
/// What is printed of a change.
#pragma once

#include "change/commandline.h"
#include "trial/changestatus.h"

namespace quendar {

// Each prints lines for people, or with `--json` one object. They throw Error when that cannot be written.

void printChange(const CommandLine &commandLine, const ChangeStatus &status);
void printHistory(const CommandLine &commandLine, const QVector<ChangeStatus> &statuses);

/// @p sentence says to people why there is none.
void printNoChange(const CommandLine &commandLine, const char *sentence);

inline constexpr char noChangeYet[] = "No change was made here yet";

} // namespace quendar
