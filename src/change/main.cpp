// SPDX-License-Identifier: MIT
#include "change/commandline.h"
#include "change/exitstatus.h"
#include "change/json.h"
#include "change/plancommand.h"
#include "change/readable.h"
#include "change/redactcommand.h"
#include "change/standardstreams.h"
#include "change/verifycommand.h"
#include "engine/application.h"
#include "report/error.h"

#include <algorithm>
#include <cstdio>

using namespace quendar;

namespace {

void printError(const QString &message) {
    QStringList lines = message.split(QLatin1Char('\n'));
    std::transform(lines.cbegin(), lines.cend(), lines.begin(), readable);
    std::fprintf(stderr, "error: %s\n", lines.join(QLatin1Char('\n')).toLocal8Bit().constData());
}

Commands commands() {
    return {{QStringLiteral("plan"), {{option::json, option::showSecrets, option::withDocument}, runPlan}},
            {QStringLiteral("verify"), {{option::json}, runVerify}},
            {QStringLiteral("redact"), {{option::json, option::output}, runRedact}}};
}

/// Says why a command could not be done, as its options demand.
int fail(const CommandLine &commandLine, const Error &reason) {
    try {
        if (commandLine.isJson)
            print(errorJson(reason.message()));
        else
            printError(reason.message());
    } catch (const Error &error) {
        printError(error.message());
    }
    return exitstatus::failed;
}

int runCommand(const CommandLine &commandLine) {
    try {
        return commands().value(commandLine.command).run(commandLine);
    } catch (const Error &error) {
        return fail(commandLine, error);
    }
}

int answer(const Answer &answered) {
    if (answered.status != exitstatus::done) {
        std::fputs(answered.text.toLocal8Bit().constData(), stderr);
        return answered.status;
    }
    try {
        print(answered.text.toUtf8());
        return answered.status;
    } catch (const Error &error) {
        printError(error.message());
        return exitstatus::failed;
    }
}

} // namespace

int main(int argc, char *argv[]) {
    secureStandardStreams();
    Application application(argc, argv);
    const auto commandLine = readCommandLine(QCoreApplication::arguments(), commands());
    const auto *const answered = std::get_if<Answer>(&commandLine);
    application.end(answered ? answer(*answered) : runCommand(std::get<CommandLine>(commandLine)));
}
