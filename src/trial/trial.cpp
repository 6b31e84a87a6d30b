// SPDX-License-Identifier: MIT
#include "trial/trial.h"

#include "planning/foresight.h"
#include "planning/places.h"
#include "planning/planningclient.h"
#include "planning/restoration.h"
#include "registry/viewpaths.h"
#include "stages/postaction.h"
#include "trial/check.h"
#include "trial/guard.h"
#include "trial/sectionrun.h"

#include <QtCore/QCryptographicHash>

#include <algorithm>

namespace quendar {

namespace {

using std::chrono::seconds;

/// Plans that are made while somebody else writes again and again.
constexpr int maximumPlans = 3;

/// What a restart may lose of the time that has gone by.
constexpr seconds timeKeeping(5);

QString byCommand() {
    return QStringLiteral("by command");
}

QString newId(int number) {
    return QStringLiteral("%1-%2").arg(QString::number(number), QUuid::createUuid().toString(QUuid::Id128).left(6));
}

/// Those of the change, in its order, and the others in which something differs.
QStringList sectionsToPutBack(const ChangeRecord &record, const ChangeSet &changes) {
    QStringList sections = record.sections;
    for (auto path = changes.byPath().keyBegin(); path != changes.byPath().keyEnd(); ++path) {
        const QString section = sectionOf(*path);
        if (!section.isEmpty() && sections.value(sections.size() - 1) != section)
            sections.append(section);
    }
    sections.removeDuplicates();
    return sections;
}

QString notApplied(const QStringList &sections) {
    return QStringLiteral("impossible to apply: ") + sections.join(QStringLiteral(", "));
}

} // namespace

Trial::Trial(const StateFolder &stateFolder, const FileLock &held, TrialObserver &watcher)
    : folder(stateFolder), lock(held), observer(watcher), change(folder) {}

bool Trial::import(const ChangeRequest &request) {
    if (change && folder.isMarked())
        change.store();
    change.replace(std::nullopt);
    std::optional<PlanningClient> client;
    if (!prepare(request, client))
        return false;
    QString failure = commit(*client);
    client.reset();
    if (failure.isNull())
        failure = apply();
    if (!failure.isNull())
        putBack(failure);
    check();
    return true;
}

/// Leaves pending in @p client what the plan says; false where there is nothing to do.
bool Trial::prepare(const ChangeRequest &request, std::optional<PlanningClient> &client) {
    for (int plans = 1;; ++plans) {
        try {
            return prepareOnce(request, client.emplace());
        } catch (const ChangedMeanwhile &error) {
            if (plans < maximumPlans)
                continue;
            abandon(error.message());
            throw;
        } catch (const Error &error) {
            abandon(error.message());
            throw;
        }
    }
}

bool Trial::prepareOnce(const ChangeRequest &request, PlanningClient &client) {
    const ImportPlan plan = planImport(request.document, client);
    observer.planned(plan);
    QStringList sections = request.appliesAll ? plan.sections : changingSections(plan);
    sections.removeDuplicates();
    if (plan.changes.byPath().isEmpty() && sections.isEmpty()) {
        abandon(QStringLiteral("somebody else has done the same meanwhile"));
        return false;
    }

    const bool isFirst = !change;
    if (isFirst)
        begin(request);
    change->counts = countsOf(plan);
    change->sections = sections;
    folder.writeJournal(change->id, plan.changes);
    change.store();
    if (isFirst) {
        requireGuard(folder, change->id);
        observer.begun(*change.value());
    }
    requireUntouched(plan.changes);
    return true;
}

void Trial::begin(const ChangeRequest &request) {
    folder.archive();
    change.replace(ChangeRecord());
    change->number = folder.lastNumber() + 1;
    change->id = newId(change->number);
    change->origin = request.origin;
    change->started = QDateTime::currentDateTimeUtc();
    change->file = request.file;
    change->sha256 =
        QString::fromLatin1(QCryptographicHash::hash(request.document.bytes, QCryptographicHash::Sha256).toHex());
    change->confirmWithin = request.confirmWithin;
    change->applyLimit = request.applyLimit;
    change->isRestartHeldBack = request.isRestartHeldBack;
    change->check = request.check;
    change->triggers = QUuid::createUuid();
}

/// Returns why the change is to be put back, where it was committed although the registry has failed.
QString Trial::commit(PlanningClient &client) {
    try {
        client.carryOut();
        return {};
    } catch (const Error &error) {
        TessaroClient reader;
        if (restorationOf(folder.requireJournalOf(change->id), reader, Conflicts::LeftAlone).isAnythingChanged)
            return error.message();
        abandon(error.message());
        throw;
    }
}

/// Ends a change, if one was begun, that was not committed.
void Trial::abandon(const QString &reason) {
    if (!change)
        return;
    change->reason = reason;
    try {
        change.end(ChangeState::Failed);
    } catch (const Error &) {
        change->state = ChangeState::Failed; // the guard, which finds it planned, comes to the same
    }
}

/// Has the sections applied, and returns why the change is to be put back: null where it is well.
QString Trial::apply() {
    try {
        change->isCommitted = true;
        change->state = ChangeState::Applying;
        change.store();
        SectionRun run(change, lock, observer);
        run.apply(change->sections, change->results, SectionRun::AtFailure::Stop);
        change->postAction = run.takePostAction();
        const QStringList failed = unapplied(change->results);
        if (!failed.isEmpty())
            return notApplied(failed);
        wait();
        return {};
    } catch (const Error &error) {
        return error.message();
    }
}

void Trial::wait() {
    change->elapsed = {};
    change->moment = BootMoment::now();
    const bool isKept = !change->confirmWithin && !change->check;
    if (isKept) {
        change.end(ChangeState::Confirmed);
    } else {
        change->isRestartAwaited =
            change->postAction && isRestart(change->postAction->line, change->postAction->command);
        change->state = ChangeState::Trying;
        change.store();
    }
    startPostActionIfDue();
}

/// A kill right after the start has it started twice; none has it lost.
void Trial::startPostActionIfDue() {
    if (!change->isPostActionDue())
        return;
    startPostAction(change->postAction->command, Streams::None);
    change->postAction->isStarted = true;
    change.storeIfPossible();
}

/// The same, for one that may have been started: not while it could not be stored that it was.
void Trial::resumePostAction() {
    if (change->isPostActionDue() && change.storeIfPossible())
        startPostActionIfDue();
}

void Trial::check() {
    if (!isOpen() || change->state != ChangeState::Trying || !change->isCheckDue())
        return;
    const auto left = change->remainingAt(BootMoment::now()).value_or(change->check->limit);
    const seconds limit = std::clamp(std::chrono::ceil<seconds>(left), seconds(1), change->check->limit);
    const auto goesOn = [this] {
        keepTime();
        return !folder.isPutBackWanted(change->id);
    };
    if (!passesCheck(change->check->command, limit, lock.descriptor(), goesOn)) {
        const bool isWanted = folder.isPutBackWanted(change->id);
        change->check->isFailed = !isWanted;
        putBack(isWanted ? byCommand() : QStringLiteral("its check has failed"));
        return;
    }
    change->check->isPassed = true;
    if (change->confirmWithin)
        change.store();
    else
        confirm();
}

void Trial::keepTime() {
    if (isOpen() && change->elapsedAt(BootMoment::now()) - change->elapsed >= timeKeeping)
        change.storeIfPossible();
}

void Trial::confirm() {
    if (standsAsBefore())
        putBack(QStringLiteral("all that it changed stands as before already"));
    else
        change.end(ChangeState::Confirmed);
}

/// Somebody has put everything back, perhaps a process that could not store that.
bool Trial::standsAsBefore() const {
    const ChangeSet changes = folder.requireJournalOf(change->id);
    TessaroClient client;
    const Restoration restoration = restorationOf(changes, client, Conflicts::LeftAlone);
    return !restoration.isAnythingChanged && restoration.conflicts.size() < changes.byPath().size();
}

void Trial::resume() {
    if (!change)
        return;
    const bool hasRestarted = noteRestart();
    switch (change->state) {
    case ChangeState::Planned:
    case ChangeState::Applying:
        putBack(QStringLiteral("it was interrupted"));
        break;
    case ChangeState::Reverting:
        putBack(change->reason);
        break;
    case ChangeState::Trying:
        resumeWaiting(hasRestarted);
        break;
    case ChangeState::Confirmed:
    case ChangeState::Reverted:
    case ChangeState::Failed:
        if (!change->ended.isValid()) // only a name told of it
            change->ended = QDateTime::currentDateTimeUtc();
        if (!folder.isMarked() || change.storeIfPossible())
            change.tidyUp();
        resumePostAction();
        break;
    }
}

/// Whether the device has restarted and nobody had asked for it. What a post-action was to do, a restart has done.
bool Trial::noteRestart() {
    const BootMoment now = BootMoment::now();
    if (change->moment.boot == now.boot)
        return false;
    const bool wasAskedFor = std::exchange(change->isRestartAwaited, false);
    if (change->isOpen())
        ++change->restarts;
    if (change->isOpen() || change->isPostActionDue()) {
        if (change->postAction)
            change->postAction->isStarted = true;
        change.storeIfPossible();
    }
    return !wasAskedFor;
}

void Trial::resumeWaiting(bool hasRestarted) {
    if (hasRestarted && change->restarts > 1)
        putBack(QStringLiteral("the device has restarted again"));
    else if (change->remainingAt(BootMoment::now()) != std::chrono::milliseconds::zero())
        resumePostAction();
    else if (change->confirmWithin)
        putBack(QStringLiteral("nobody has confirmed it in time"));
    else
        putBack(QStringLiteral("the device has not restarted"));
}

void Trial::putBack(const QString &reason) {
    change->reason = reason;
    try {
        restore();
    } catch (const Error &error) {
        change->state = ChangeState::Reverting; // what a check says later does not keep it
        change->isRestartAwaited = false;
        change->problem = error.message();
        change.noteReverting();
        throw;
    }
    change.noteReverted();
    startPostActionIfDue();
}

/// May be done again, as often as it is interrupted.
void Trial::restore() {
    const ChangeSet changes = folder.requireJournalOf(change->id);
    TessaroClient client;
    const Restoration restoration =
        restorationOf(changes, client, change->isForced ? Conflicts::Overwritten : Conflicts::LeftAlone);
    withdrawApplies(*change.value());
    change->isCommitted = change->isCommitted || restoration.isAnythingChanged;
    change->state = ChangeState::Reverting;
    change->isRestartAwaited = false;
    change->postAction.reset();
    change->putBackResults.clear();
    change->triggers = QUuid::createUuid(); // others each time: an ended process's service may still use those before
    change.noteReverting();

    writeSide(client, restoration.changes, &Change::before);
    const int status = client.commit(viewRoot());
    require(status == 0, TessaroError(viewRoot(), status));
    change->conflicts = restoration.conflicts;
    if (change->isCommitted) {
        SectionRun run(change, lock, observer);
        run.apply(sectionsToPutBack(*change.value(), changes), change->putBackResults, SectionRun::AtFailure::GoOn);
        change->postAction = run.takePostAction();
        withdrawApplies(*change.value());
    }
    change->problem = QString();
}

void Trial::putBackByCommand() {
    if (change->state == ChangeState::Trying)
        putBack(byCommand());
    else
        resume();
}

void Trial::reopen(const ChangeRecord &kept) {
    if (!change || change->id != kept.id)
        folder.archive();
    ChangeRecord reopened = kept;
    reopened.state = ChangeState::Reverting;
    reopened.reason = byCommand();
    reopened.ended = QDateTime();
    reopened.passTo(BootMoment::now());
    folder.write(reopened); // or it is not open
    change.replace(reopened);
    requireGuard(folder, change->id);
}

} // namespace quendar
