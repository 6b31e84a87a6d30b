// SPDX-License-Identifier: MIT
/// How a command says that it cannot be done.
#pragma once

#include "change/commandline.h"

namespace quendar {

/// Says "error: MESSAGE" on standard error.
void printError(const QString &message);

/// Says why a command could not be done, as its options demand: with `--json` as an object, with the id of the change
/// that is @p open, unless that is empty.
void printFailure(const CommandLine &commandLine, const QString &message, const QString &open = QString());

} // namespace quendar
