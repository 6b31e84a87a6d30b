// SPDX-License-Identifier: MIT
#include "change/failure.h"

#include "change/json.h"
#include "change/readable.h"
#include "change/standardstreams.h"
#include "report/error.h"

#include <algorithm>
#include <cstdio>

namespace quendar {

void printError(const QString &message) {
    QStringList lines = message.split(QLatin1Char('\n'));
    std::transform(lines.cbegin(), lines.cend(), lines.begin(), readable);
    std::fprintf(stderr, "error: %s\n", lines.join(QLatin1Char('\n')).toLocal8Bit().constData());
}

void printFailure(const CommandLine &commandLine, const QString &message, const QString &open) {
    try {
        if (commandLine.has(option::json))
            print(errorJson(message, open));
        else
            printError(message);
    } catch (const Error &error) {
        printError(error.message());
    }
}

} // namespace quendar
