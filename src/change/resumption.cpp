// SPDX-License-Identifier: MIT
#include "change/resumption.h"

#include "change/failure.h"
#include "report/error.h"
#include "trial/guard.h"

namespace quendar {

void resumeShown(Trial &trial, const StateFolder &folder) {
    try {
        trial.resume();
    } catch (const Error &error) {
        if (!trial.isOpen())
            throw;
        printError(error.message());
    }
    leaveToGuard(trial, folder);
}

void leaveToGuard(const Trial &trial, const StateFolder &folder) {
    if (!trial.isOpen())
        return;
    try {
        requireGuard(folder, trial.record()->id);
    } catch (const Error &error) {
        printError(error.message());
    }
}

} // namespace quendar
