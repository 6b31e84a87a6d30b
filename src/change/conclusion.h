// SPDX-License-Identifier: MIT
/// What a command has come to.
#pragma once

#include "change/commandline.h"
#include "trial/trial.h"

#include <functional>

namespace quendar {

/// To be printed when the lock is gone: whoever reads slowly must not hold a change.
struct Conclusion {
    ChangeRecord record;
    int status;
    QString error; ///< that is left to the guard; null where there is none
};

/// Takes @p step with @p trial. Where it fails and the change is open, a guard goes on: returns why it has failed.
/// Throws Error where nothing is open.
QString stepOrLeaveToGuard(Trial &trial, const StateFolder &folder, const std::function<void()> &step);

/// Prints it, and returns the exit status.
int printConclusion(const CommandLine &commandLine, const Conclusion &conclusion, const StateFolder &folder);

} // namespace quendar
