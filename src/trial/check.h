// SPDX-License-Identifier: MIT
/// The command that tells whether a device is well.
#pragma once

#include "trial/ownprogram.h"

#include <chrono>

namespace quendar {

/// Has a helper, which gets @p lock, run @p command by the shell, in the folder "/", until it ends with 0; whether
/// it has within @p limit.
bool passesCheck(const QString &command, std::chrono::seconds limit, int lock, const Tick &tick);

/// The helper. Returns the exit status, having printed a line when the command has ended with 0.
int runCheck(const QString &command, std::chrono::seconds limit);

} // namespace quendar
