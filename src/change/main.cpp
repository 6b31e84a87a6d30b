// SPDX-License-Identifier: MIT
#include "change/applycommand.h"
#include "change/commandline.h"
#include "change/confirmcommand.h"
#include "change/exitstatus.h"
#include "change/failure.h"
#include "change/plancommand.h"
#include "change/redactcommand.h"
#include "change/resumecommand.h"
#include "change/revertcommand.h"
#include "change/standardstreams.h"
#include "change/statuscommand.h"
#include "change/verifycommand.h"
#include "engine/application.h"
#include "report/error.h"
#include "trial/changestatus.h"
#include "trial/check.h"
#include "trial/guard.h"
#include "trial/sectionapplier.h"

#include <csignal>
#include <cstdio>

using namespace quendar;

namespace {

Commands commands() {
    using namespace option;
    const QStringList changing{json, check, checkFor, applyAll, applyLimit, noReboot};
    return {{QStringLiteral("plan"), {Command::File, {json, showSecrets, withDocument}, {}, runPlan}},
            {QStringLiteral("apply"), {Command::File, changing, {}, runApply}},
            {QStringLiteral("try"),
             {Command::File, changing + QStringList{confirmWithin, detach}, {confirmWithin}, runApply}},
            {QStringLiteral("confirm"), {Command::Id, {json}, {}, runConfirm}},
            {QStringLiteral("revert"), {Command::OptionalId, {json, force, forget, noReboot}, {}, runRevert}},
            {QStringLiteral("status"), {Command::OptionalId, {json, all}, {}, runStatus}},
            {QStringLiteral("resume"), {Command::None, {json}, {}, runResume}},
            {QStringLiteral("verify"), {Command::File, {json}, {}, runVerify}},
            {QStringLiteral("redact"), {Command::File, {json, output}, {output}, runRedact}}};
}

/// The jobs that this program starts itself for, and services of the system start it for.
std::optional<int> runOwnJob(const QStringList &arguments) {
    const QString job = arguments.value(1);
    const std::chrono::seconds limit(arguments.value(2).toInt());
    if (job == QLatin1String("apply-sections"))
        return runApplySections(limit);
    if (job == QLatin1String("run-check"))
        runCheck(arguments.value(3), limit);
    if (job == QLatin1String("list-conflicts"))
        listConflicts(StateFolder(), arguments.value(2));
    else if (job == QLatin1String("guard"))
        guardChange(StateFolder());
    else
        return std::nullopt;
    return exitstatus::done;
}

int runCommand(const CommandLine &commandLine) {
    try {
        return commands().value(commandLine.command).run(commandLine);
    } catch (const Error &error) {
        printFailure(commandLine, error.message());
        return exitstatus::failed;
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

/// Undoes what a caller may have set that all who start processes and alarms rely on.
void takeUsualSignals() {
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGALRM, SIG_DFL);
}

int run(const QStringList &arguments) {
    try {
        if (const std::optional<int> status = runOwnJob(arguments))
            return *status;
    } catch (const Error &error) {
        printError(error.message());
        return exitstatus::failed;
    }
    const auto commandLine = readCommandLine(arguments, commands());
    const auto *const answered = std::get_if<Answer>(&commandLine);
    return answered ? answer(*answered) : runCommand(std::get<CommandLine>(commandLine));
}

} // namespace

int main(int argc, char *argv[]) {
    takeUsualSignals();
    secureStandardStreams();
    Application application(argc, argv);
    application.end(run(QCoreApplication::arguments()));
}
