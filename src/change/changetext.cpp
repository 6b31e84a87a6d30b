// SPDX-License-Identifier: MIT
#include "change/changetext.h"

#include "change/plantext.h"
#include "change/readable.h"

#include <algorithm>

namespace quendar {

namespace {

using std::chrono::seconds;

QString timeText(seconds time) {
    const auto left = time.count();
    if (left < 60)
        return QStringLiteral("%1 s").arg(left);
    return left < 3600 ? QStringLiteral("%1 min %2 s").arg(left / 60).arg(left % 60)
                       : QStringLiteral("%1 h %2 min").arg(left / 3600).arg(left % 3600 / 60);
}

QString localTime(const QDateTime &time) {
    return time.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString originText(const ChangeRecord::Origin &origin) {
    QString text = origin.user;
    if (!origin.sudoUser.isNull())
        text = QStringLiteral("%1 as %2").arg(origin.sudoUser, origin.user);
    if (!origin.client.isNull())
        text += QStringLiteral(" from ") + origin.client;
    return readable(text);
}

/// What a change that waits still waits for.
QString waitingText(const ChangeStatus &status) {
    const ChangeRecord &record = status.record;
    const seconds left = std::chrono::floor<seconds>(status.remaining.value_or(seconds(0)));
    if (record.isRestartAwaited)
        return QStringLiteral("the device restarts, then it goes on");
    if (record.isCheckDue())
        return QStringLiteral("its check is running");
    return QStringLiteral("%1 left to confirm it: quendar-change confirm %2").arg(timeText(left), record.id);
}

/// The state in words, and why.
QString stateText(const ChangeStatus &status) {
    const ChangeRecord &record = status.record;
    const QString reason = record.reason.isNull() ? QString() : QStringLiteral(": ") + readable(record.reason);
    switch (record.state) {
    case ChangeState::Planned:
        return QStringLiteral("is about to be made");
    case ChangeState::Applying:
        return QStringLiteral("is being applied");
    case ChangeState::Trying:
        return QStringLiteral("waits, ") + waitingText(status);
    case ChangeState::Reverting:
        return QStringLiteral("is being put back") + reason;
    case ChangeState::Confirmed:
        return QStringLiteral("is kept");
    case ChangeState::Reverted:
        return QStringLiteral("was put back") + reason;
    case ChangeState::Failed:
        return QStringLiteral("has changed nothing") + reason;
    }
    return {};
}

QString resultText(const SectionResult &result) {
    const QString time = QString::number(double(result.duration.count()) / 1000, 'f', 1) + QStringLiteral(" s");
    switch (result.outcome) {
    case SectionResult::Applied:
        return QStringLiteral("applied, ") + time;
    case SectionResult::Failed:
        return QStringLiteral("failed with %1, ").arg(quoted(result.answer)) + time;
    case SectionResult::Refused:
        return QStringLiteral("refused with status %1").arg(result.status);
    case SectionResult::NoAnswer:
        return QStringLiteral("no answer, ") + time;
    }
    return {};
}

QString resultsText(const QVector<SectionResult> &results) {
    int column = 0;
    for (const SectionResult &result : results)
        column = std::max(column, readable(result.name).size());
    QString text;
    for (const SectionResult &result : results)
        text += QStringLiteral("  ") + readable(result.name).leftJustified(column) + QStringLiteral("  ") +
                resultText(result) + QLatin1Char('\n');
    return text;
}

QString listText(const QString &title, const QStringList &paths) {
    if (paths.isEmpty())
        return {};
    QString text = title;
    for (const QString &path : paths.mid(0, maximumLines))
        text += QStringLiteral("  ") + readable(path) + QLatin1Char('\n');
    if (paths.size() > maximumLines)
        text += QStringLiteral("  … and %1 more\n").arg(paths.size() - maximumLines);
    return text;
}

QString conflictsText(const ChangeStatus &status) {
    if (!status.conflicts)
        return QStringLiteral("What others have written since cannot be told: the registry cannot be read\n");
    return listText(status.record.isOpen() ? QStringLiteral("Others have written since, would be left alone:\n")
                                           : QStringLiteral("Others have written since, left alone:\n"),
                    *status.conflicts);
}

} // namespace

QByteArray changeText(const ChangeStatus &status) {
    const ChangeRecord &record = status.record;
    QString text = QStringLiteral("Change %1 %2\n").arg(record.id, stateText(status));
    text += QStringLiteral("  %1, %2, %3\n")
                .arg(readable(record.file), originText(record.origin), localTime(record.started));
    const QString counts = countsText(record.counts);
    if (!counts.isEmpty())
        text += QStringLiteral("  settings: %1\n").arg(counts);
    text += resultsText(record.results);
    if (record.check && record.check->isFailed)
        text += QStringLiteral("The check failed: %1\n").arg(quoted(record.check->command));
    if (!record.putBackResults.isEmpty())
        text += QStringLiteral("Applied again:\n") + resultsText(record.putBackResults);
    text += conflictsText(status);
    if (!record.problem.isNull())
        text += (record.state == ChangeState::Trying ? QStringLiteral("Cannot be put back: %1\n")
                                                     : QStringLiteral("Not put back yet: %1\n"))
                    .arg(readable(record.problem));
    if (record.isOpen() && !status.isWatched)
        text += QStringLiteral("Nobody watches it: quendar-change resume goes on with it\n");
    return text.toUtf8();
}

QByteArray changeLine(const ChangeRecord &record) {
    const QString reason = record.reason.isNull() ? QString() : QStringLiteral(": ") + readable(record.reason);
    return QStringLiteral("%1  %2  %3  %4  %5  %6\n")
        .arg(record.id.leftJustified(11), localTime(record.started), originText(record.origin), readable(record.file),
             countsText(record.counts), nameOf(record.state) + reason)
        .toUtf8();
}

} // namespace quendar
