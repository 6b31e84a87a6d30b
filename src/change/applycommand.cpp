// SPDX-License-Identifier: MIT
#include "change/applycommand.h"

#include "change/changeoutput.h"
#include "change/conclusion.h"
#include "change/detachment.h"
#include "change/exitstatus.h"
#include "change/failure.h"
#include "change/masking.h"
#include "change/origin.h"
#include "change/progress.h"
#include "change/standardstreams.h"

#include <chrono>
#include <variant>

namespace quendar {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds usualCheckTime = 30s;
constexpr std::chrono::seconds usualApplyLimit = 10min;

/// Longer than a guard needs to look at the time.
constexpr std::chrono::milliseconds lockPatience = 500ms;

/// Shows how the change goes on, as long as somebody looks.
class ShownTrial : public ShownProgress {
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

/// Nothing is done, since another change is open.
struct Refusal {
    QString message;
    QString open; ///< its id; empty where that is not known
};

Refusal refusalBecauseOf(const std::optional<ChangeRecord> &other) {
    if (!other || !other->isOpen())
        return {QStringLiteral("another change is being made"), {}};
    return {
        QStringLiteral("the change %1 is open (%2): see quendar-change status").arg(other->id, nameOf(other->state)),
        other->id};
}

int statusAfter(const ChangeRecord &record) {
    if (record.state == ChangeState::Reverted)
        return exitstatus::putBack;
    return record.isOpen() && record.state != ChangeState::Trying ? exitstatus::unfinished : exitstatus::done;
}

/// Ends what an earlier change has left open; a caller who is not to be held leaves that to the guard. Returns why
/// there can be no other change now.
std::optional<Refusal> endEarlierChange(const CommandLine &commandLine, Trial &trial, const StateFolder &folder) {
    const bool wasOpen = trial.isOpen();
    stepOrLeaveToGuard(trial, folder, [&] {
        if (!wasOpen || !commandLine.has(option::detach))
            trial.resume();
    });
    if (trial.isOpen())
        return refusalBecauseOf(trial.record());
    if (!wasOpen)
        return std::nullopt;
    return Refusal{QStringLiteral("the change %1 was interrupted, and has been put back now; give the command again")
                       .arg(trial.record()->id),
                   {}};
}

struct NothingToDo {};

std::variant<Conclusion, Refusal, NothingToDo> import(const CommandLine &commandLine, const ChangeRequest &request,
                                                      ShownTrial &shown, const StateFolder &folder) {
    const std::optional<FileLock> lock = FileLock::tried(folder.lockPath(), lockPatience);
    if (!lock)
        return refusalBecauseOf(folder.record());
    Trial trial(folder, *lock, shown);
    const std::optional<Refusal> refusal = endEarlierChange(commandLine, trial, folder);
    if (refusal)
        return *refusal;
    bool isAnythingDone = true;
    const QString error = stepOrLeaveToGuard(trial, folder, [&] { isAnythingDone = trial.import(request); });
    if (!isAnythingDone)
        return NothingToDo();
    return Conclusion{*trial.record(), statusAfter(*trial.record()), error};
}

} // namespace

int runApply(const CommandLine &commandLine) {
    std::optional<Detachment> detachment;
    if (commandLine.has(option::detach))
        detachment.emplace();
    const ChangeRequest request = requestOf(commandLine);
    const StateFolder folder;
    folder.make();
    ShownTrial shown(commandLine, folder, detachment);
    const auto result = import(commandLine, request, shown, folder);
    if (const auto *const refusal = std::get_if<Refusal>(&result)) {
        printFailure(commandLine, refusal->message, refusal->open);
        return exitstatus::otherOpen;
    }
    if (std::holds_alternative<NothingToDo>(result)) {
        shown.printWarnings();
        printNoChange(commandLine, "Nothing to do");
        return exitstatus::done;
    }
    const Conclusion conclusion = std::get<Conclusion>(result);
    return detachment && detachment->isCallerGone() ? conclusion.status
                                                    : printConclusion(commandLine, conclusion, folder);
}

} // namespace quendar
