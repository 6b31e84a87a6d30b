// SPDX-License-Identifier: MIT
#include "change/applycommand.h"

#include "change/changeoutput.h"
#include "change/detachment.h"
#include "change/exitstatus.h"
#include "change/failure.h"
#include "change/masking.h"
#include "change/origin.h"
#include "change/progress.h"
#include "change/resumption.h"
#include "change/standardstreams.h"
#include "report/error.h"
#include "trial/trial.h"

#include <chrono>

namespace quendar {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds usualCheckTime = 30s;
constexpr std::chrono::seconds usualApplyLimit = 10min;

/// Longer than a guard needs to look at the time.
constexpr std::chrono::milliseconds lockPatience = 500ms;

/// Shows how the change goes on, as long as somebody looks.
class ShownTrial : public TrialObserver {
public:
    ShownTrial(const CommandLine &given, const StateFolder &stateFolder, std::optional<Detachment> &detached)
        : commandLine(given), folder(stateFolder), detachment(detached), masking(Secrets::ofDevice(), false) {}

    void planned(const ImportPlan &plan) override { warnings = plan.unknown + plan.warnings; }

    void begun(const ChangeRecord &record) override {
        ignoreStopKey();
        printWarnings();
        if (!detachment)
            return;
        printChange(commandLine, statusOf(record, folder));
        detachment->letCallerGo();
    }

    void applying(int number, int count, const QString &section, std::chrono::seconds elapsed) override {
        progress.show(number, count, section, elapsed);
    }

    void applied() override { progress.clear(); }

    void printWarnings() const {
        for (const Warning &warning : warnings)
            printWarning(masking.shown(warning));
    }

private:
    const CommandLine &commandLine;
    const StateFolder &folder;
    std::optional<Detachment> &detachment;
    const Masking masking;
    QVector<Warning> warnings;
    Progress progress;
};

ChangeRequest requestOf(const CommandLine &commandLine) {
    ChangeRequest request;
    request.document = checkedDocument(readDocumentAt(commandLine.operand));
    request.file = commandLine.operand.section(QLatin1Char('/'), -1);
    request.origin = originOfThisProcess();
    request.confirmWithin = commandLine.time(option::confirmWithin);
    if (commandLine.has(option::check))
        request.check = ChangeRecord::Check{commandLine.value(option::check),
                                            commandLine.time(option::checkFor).value_or(usualCheckTime)};
    request.applyLimit = commandLine.time(option::applyLimit).value_or(usualApplyLimit);
    request.isRestartHeldBack = commandLine.has(option::noReboot);
    request.appliesAll = commandLine.has(option::applyAll);
    return request;
}

int refuse(const CommandLine &commandLine, const QString &message, const QString &open) {
    printFailure(commandLine, message, open);
    return exitstatus::otherOpen;
}

int refuseBecauseOpen(const CommandLine &commandLine, const std::optional<ChangeRecord> &other) {
    if (!other || !other->isOpen())
        return refuse(commandLine, QStringLiteral("another change is being made"), {});
    return refuse(
        commandLine,
        QStringLiteral("the change %1 is open (%2): see quendar-change status").arg(other->id, nameOf(other->state)),
        other->id);
}

int statusAfter(const ChangeRecord &record) {
    if (record.state == ChangeState::Reverted)
        return exitstatus::putBack;
    return record.isOpen() && record.state != ChangeState::Trying ? exitstatus::unfinished : exitstatus::done;
}

/// Ends what an earlier change has left open; a caller who is not to be held leaves that to the guard. Returns the exit
/// status where there was anything.
std::optional<int> endEarlierChange(const CommandLine &commandLine, Trial &trial, const StateFolder &folder) {
    const bool wasOpen = trial.isOpen();
    if (wasOpen && commandLine.has(option::detach))
        leaveToGuard(trial, folder);
    else
        resumeShown(trial, folder);
    if (trial.isOpen())
        return refuseBecauseOpen(commandLine, trial.record());
    if (!wasOpen)
        return std::nullopt;
    return refuse(commandLine,
                  QStringLiteral("the change %1 was interrupted, and has been put back now; give the command again")
                      .arg(trial.record()->id),
                  {});
}

int import(const CommandLine &commandLine, const ChangeRequest &request, std::optional<Detachment> &detachment) {
    const StateFolder folder;
    folder.make();
    const std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (!lock)
        return refuseBecauseOpen(commandLine, folder.record());

    ShownTrial shown(commandLine, folder, detachment);
    Trial trial(folder, *lock, shown);
    const std::optional<int> refused = endEarlierChange(commandLine, trial, folder);
    if (refused)
        return *refused;
    try {
        if (!trial.import(request)) {
            shown.printWarnings();
            printNoChange(commandLine, "Nothing to do");
            return exitstatus::done;
        }
    } catch (const Error &error) {
        if (!trial.isOpen())
            throw;
        printError(error.message()); // the guard goes on
    }
    if (!detachment || !detachment->isCallerGone())
        printOutcome(commandLine, statusOf(*trial.record(), folder));
    return statusAfter(*trial.record());
}

} // namespace

int runApply(const CommandLine &commandLine) {
    std::optional<Detachment> detachment;
    if (commandLine.has(option::detach))
        detachment.emplace();
    return import(commandLine, requestOf(commandLine), detachment);
}

} // namespace quendar
