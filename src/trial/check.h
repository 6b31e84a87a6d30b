// SPDX-License-Identifier: MIT
/// The command that tells whether a device is well.
#pragma once

#include "trial/ownprogram.h"

#include <chrono>

namespace quendar {

/// Has a helper, which gets @p lock, run @p command by the shell, in the folder "/", until it ends with 0; whether
/// it has within @p limit.
bool passesCheck(const QString &command, std::chrono::seconds limit, int lock, const Tick &tick);

/// The helper, which leads the process group of all that the command starts, and ends with that.
[[noreturn]] void runCheck(const QString &command, std::chrono::seconds limit);

} // namespace quendar
