// SPDX-License-Identifier: MIT
#include "trial/changestatus.h"

#include "planning/restoration.h"
#include "report/error.h"
#include "trial/guard.h"
#include "trial/ownprogram.h"

#include <tessaroclient.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace quendar {

namespace {

/// A registry answers in milliseconds, unless somebody holds it.
constexpr std::chrono::seconds patience(1);

std::optional<QByteArray> listedConflicts(const QString &id) {
    try {
        HelperProcess helper({QStringLiteral("list-conflicts"), id});
        return helper.ask({}, patience, [] { return true; });
    } catch (const Error &) { // all else is still worth telling
        return std::nullopt;
    }
}

/// Those that there would be if the change that waits were put back now.
std::optional<QStringList> conflictsNow(const QString &id) {
    const std::optional<QByteArray> answer = listedConflicts(id);
    if (!answer)
        return std::nullopt;
    QStringList paths;
    for (const auto &path : QJsonDocument::fromJson(*answer).array())
        paths.append(path.toString());
    return paths;
}

/// Why it could not be put back; null where nothing is known to be in the way.
QString problemOf(const ChangeRecord &record, const StateFolder &folder) {
    try {
        folder.requireJournalOf(record.id);
    } catch (const Error &error) {
        return error.message();
    }
    return record.problem;
}

} // namespace

ChangeStatus statusOf(const ChangeRecord &record, const StateFolder &folder) {
    const bool isWatched = record.isOpen() && isGuarded(folder, record.id);
    // a guard that has just ended has left another record
    const ChangeRecord current = record.isOpen() && !isWatched ? folder.recordOf(record.id) : record;
    ChangeStatus status{current, std::nullopt, isWatched, current.conflicts};
    if (current.state == ChangeState::Trying) {
        status.remaining = current.remainingAt(BootMoment::now());
        status.conflicts = conflictsNow(current.id);
        status.record.problem = problemOf(current, folder);
    }
    return status;
}

void listConflicts(const StateFolder &folder, const QString &id) {
    HelperTask task;
    try {
        TessaroClient client;
        const Restoration restoration = restorationOf(folder.requireJournalOf(id), client, Conflicts::LeftAlone);
        task.answer(QJsonDocument(QJsonArray::fromStringList(restoration.conflicts)).toJson(QJsonDocument::Compact));
    } catch (const Error &) { // NOLINT(bugprone-empty-catch): no answer says that it cannot be told
    }
}

} // namespace quendar
