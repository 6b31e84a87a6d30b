// SPDX-License-Identifier: MIT
#include "change/conclusion.h"

#include "change/changeoutput.h"
#include "change/failure.h"
#include "report/error.h"
#include "trial/guard.h"

namespace quendar {

QString stepOrLeaveToGuard(Trial &trial, const StateFolder &folder, const std::function<void()> &step) {
    QString reason;
    try {
        step();
    } catch (const Error &error) {
        if (!trial.isOpen())
            throw;
        reason = error.message();
    }
    try {
        if (trial.isOpen())
            requireGuard(folder, trial.record()->id);
    } catch (const Error &error) {
        reason = error.message();
    }
    return reason;
}

int printConclusion(const CommandLine &commandLine, const Conclusion &conclusion, const StateFolder &folder) {
    try {
        if (!conclusion.error.isNull())
            printError(conclusion.error);
        printChange(commandLine, statusOf(conclusion.record, folder));
    } catch (const Error &error) {
        printError(error.message()); // the exit status has to tell of the change itself
    }
    return conclusion.status;
}

} // namespace quendar
