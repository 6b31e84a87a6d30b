// SPDX-License-Identifier: MIT
/// What is known of a change.
#pragma once

#include "planning/importplan.h"
#include "trial/bootclock.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>
#include <QtCore/QUuid>
#include <QtCore/QVector>

#include <chrono>
#include <optional>

namespace quendar {

enum class ChangeState {
    Planned,   ///< what it is going to do is on the disk; perhaps it is being committed
    Applying,  ///< committed; its sections are being applied
    Trying,    ///< checked, or waiting for its confirmation
    Reverting, ///< being put back
    Confirmed, ///< kept
    Reverted,  ///< put back
    Failed,    ///< never committed
};

/// The word for it, and back.
QString nameOf(ChangeState state);
std::optional<ChangeState> stateNamed(const QString &name);

/// What has come of a section's apply.
struct SectionResult {
    enum Outcome { Applied, Failed, Refused, NoAnswer };

    QString name;
    Outcome outcome = NoAnswer;
    int status = 0; ///< of the request
    QString answer; ///< what the service has left
    std::chrono::milliseconds duration{};
};

QString nameOf(SectionResult::Outcome outcome);

/// Those of @p results that were not applied, by name.
QStringList unapplied(const QVector<SectionResult> &results);

struct ChangeRecord {
    /// A command that must succeed within a time, or the change is put back.
    struct Check {
        QString command;
        std::chrono::seconds limit;
        bool isPassed = false;
        bool isFailed = false;
    };

    /// What the apply side has asked for.
    struct PostAction {
        QString line;
        QString command;
        bool isStarted = false;
    };

    /// Whose change it is.
    struct Origin {
        QString user;
        QString sudoUser; ///< null where nobody became that user
        QString client;   ///< the address that the connection came from; null where there is none that is known
    };

    int number = 0; ///< one more than that of the change before
    QString id;     ///< never that of another change
    ChangeState state = ChangeState::Planned;
    QString reason;  ///< why it is in this state; null where that goes without saying
    QString problem; ///< why it is not put back yet; null where nothing is in the way

    Origin origin;
    QDateTime started;
    QDateTime ended; ///< null while it is open
    QString file;    ///< the document's name
    QString sha256;  ///< of the document
    SettingCounts counts;

    std::optional<std::chrono::seconds> confirmWithin; ///< nothing where nobody has to confirm it
    std::chrono::seconds applyLimit{};                 ///< for each section
    bool isRestartHeldBack = false;
    std::optional<Check> check;

    QStringList sections; ///< those to be applied
    QVector<SectionResult> results;
    QVector<SectionResult> putBackResults;
    QStringList conflicts; ///< paths that were not put back
    bool isCommitted = false;
    bool isForced = false; ///< whether conflicts are put back as well
    QUuid triggers;        ///< what the paths of the keys are made from through which sections are handed over
    std::optional<PostAction> postAction;

    std::chrono::milliseconds elapsed{}; ///< of the time to confirm, at `moment`
    BootMoment moment;
    int restarts = 0;
    bool isRestartAwaited = false;

    bool isOpen() const { return state < ChangeState::Confirmed; }
    bool isCheckDue() const { return check && !check->isPassed && !isRestartAwaited; }

    /// Whether nothing but a confirmation is missing.
    bool isConfirmable() const {
        return state == ChangeState::Trying && !isRestartAwaited && (!check || check->isPassed);
    }
    bool isPostActionDue() const { return postAction && !postAction->isStarted && !postAction->command.isEmpty(); }

    /// The path of the key for the section at @p index of those that are applied now.
    QString trigger(int index) const;

    /// How many of these paths may have been used.
    int usedTriggers() const { return qMax(results.size(), putBackResults.size()) + 1; }

    /// What has gone by since it began to wait; of a restart meanwhile, the time that the device was off is not known.
    std::chrono::milliseconds elapsedAt(const BootMoment &now) const;

    /// What is left to confirm it, or for a restart that is awaited; nothing where there is no limit.
    std::optional<std::chrono::milliseconds> remainingAt(const BootMoment &now) const;

    /// Keeps @p now and what has gone by until then.
    void passTo(const BootMoment &now);
};

/// What others are shown of a record, and, under "internal", what only this program needs.
QJsonObject toJson(const ChangeRecord &record);

/// What `toJson` has made of one. Throws Error for anything else.
ChangeRecord changeRecordFrom(const QJsonObject &json);

} // namespace quendar
