// SPDX-License-Identifier: MIT
#include "trial/changerecord.h"

#include "report/error.h"

#include <QtCore/QJsonArray>
#include <QtCore/QMap>

#include <algorithm>

namespace quendar {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A restart that was asked for and has not come by then will not come.
constexpr seconds restartLimit = std::chrono::minutes(10);

const QMap<ChangeState, QString> stateNames{
    {ChangeState::Planned, QStringLiteral("planned")},     {ChangeState::Applying, QStringLiteral("applying")},
    {ChangeState::Trying, QStringLiteral("trying")},       {ChangeState::Reverting, QStringLiteral("reverting")},
    {ChangeState::Confirmed, QStringLiteral("confirmed")}, {ChangeState::Reverted, QStringLiteral("reverted")},
    {ChangeState::Failed, QStringLiteral("failed")}};

const QMap<SectionResult::Outcome, QString> outcomeNames{{SectionResult::Applied, QStringLiteral("applied")},
                                                         {SectionResult::Failed, QStringLiteral("failed")},
                                                         {SectionResult::Refused, QStringLiteral("refused")},
                                                         {SectionResult::NoAnswer, QStringLiteral("no answer")}};

QJsonValue orNull(const QString &text) {
    return text.isNull() ? QJsonValue() : QJsonValue(text);
}

QString textOrNull(const QJsonValue &json) {
    return json.isString() ? json.toString() : QString();
}

QJsonValue toJson(const QDateTime &time) {
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODate)) : QJsonValue();
}

QDateTime timeFrom(const QJsonValue &json) {
    return QDateTime::fromString(json.toString(), Qt::ISODate);
}

QJsonArray toJson(const QVector<SectionResult> &results) {
    QJsonArray list;
    for (const SectionResult &result : results)
        list.append(QJsonObject{{QStringLiteral("name"), result.name},
                                {QStringLiteral("result"), nameOf(result.outcome)},
                                {QStringLiteral("status"), result.status},
                                {QStringLiteral("answer"), result.answer},
                                {QStringLiteral("seconds"), double(result.duration.count()) / 1000}});
    return list;
}

QVector<SectionResult> resultsFrom(const QJsonValue &json) {
    QVector<SectionResult> results;
    for (const auto &item : json.toArray()) {
        const QJsonObject result = item.toObject();
        results.append({result.value(QLatin1String("name")).toString(),
                        outcomeNames.key(result.value(QLatin1String("result")).toString(), SectionResult::NoAnswer),
                        result.value(QLatin1String("status")).toInt(), result.value(QLatin1String("answer")).toString(),
                        milliseconds(qRound64(result.value(QLatin1String("seconds")).toDouble() * 1000))});
    }
    return results;
}

QStringList textsFrom(const QJsonValue &json) {
    QStringList texts;
    for (const auto &text : json.toArray())
        texts.append(text.toString());
    return texts;
}

QJsonObject toJson(const SettingCounts &counts) {
    return {{QStringLiteral("changed"), counts.changed},
            {QStringLiteral("made"), counts.made},
            {QStringLiteral("deleted"), counts.deleted},
            {QStringLiteral("unknown"), counts.unknown}};
}

SettingCounts countsFrom(const QJsonObject &json) {
    return {json.value(QLatin1String("changed")).toInt(), json.value(QLatin1String("made")).toInt(),
            json.value(QLatin1String("deleted")).toInt(), json.value(QLatin1String("unknown")).toInt()};
}

QJsonValue toJson(const std::optional<ChangeRecord::Check> &check) {
    if (!check)
        return {};
    const QJsonValue result = check->isPassed   ? QJsonValue(QStringLiteral("passed"))
                              : check->isFailed ? QJsonValue(QStringLiteral("failed"))
                                                : QJsonValue();
    return QJsonObject{{QStringLiteral("command"), check->command},
                       {QStringLiteral("for_s"), int(check->limit.count())},
                       {QStringLiteral("result"), result}};
}

std::optional<ChangeRecord::Check> checkFrom(const QJsonValue &json) {
    if (!json.isObject())
        return std::nullopt;
    const QString result = json.toObject().value(QLatin1String("result")).toString();
    return ChangeRecord::Check{json.toObject().value(QLatin1String("command")).toString(),
                               seconds(json.toObject().value(QLatin1String("for_s")).toInt()),
                               result == QLatin1String("passed"), result == QLatin1String("failed")};
}

QJsonValue toJson(const std::optional<ChangeRecord::PostAction> &action) {
    if (!action)
        return {};
    return QJsonObject{{QStringLiteral("line"), action->line},
                       {QStringLiteral("command"), action->command},
                       {QStringLiteral("started"), action->isStarted}};
}

std::optional<ChangeRecord::PostAction> postActionFrom(const QJsonValue &json) {
    if (!json.isObject())
        return std::nullopt;
    return ChangeRecord::PostAction{json.toObject().value(QLatin1String("line")).toString(),
                                    json.toObject().value(QLatin1String("command")).toString(),
                                    json.toObject().value(QLatin1String("started")).toBool()};
}

QJsonObject internals(const ChangeRecord &record) {
    return {{QStringLiteral("number"), record.number},
            {QStringLiteral("confirm_within_s"),
             record.confirmWithin ? QJsonValue(int(record.confirmWithin->count())) : QJsonValue()},
            {QStringLiteral("apply_limit_s"), int(record.applyLimit.count())},
            {QStringLiteral("restart_held_back"), record.isRestartHeldBack},
            {QStringLiteral("to_apply"), QJsonArray::fromStringList(record.sections)},
            {QStringLiteral("committed"), record.isCommitted},
            {QStringLiteral("forced"), record.isForced},
            {QStringLiteral("triggers"), record.triggers.toString()},
            {QStringLiteral("elapsed_ms"), double(record.elapsed.count())},
            {QStringLiteral("boot"), record.moment.boot},
            {QStringLiteral("boot_ms"), double(record.moment.time.count())}};
}

void readInternals(const QJsonObject &json, ChangeRecord &record) {
    const auto number = [&json](const char *name) { return qint64(json.value(QLatin1String(name)).toDouble()); };
    record.number = int(number("number"));
    if (json.value(QLatin1String("confirm_within_s")).isDouble())
        record.confirmWithin = seconds(number("confirm_within_s"));
    record.applyLimit = seconds(number("apply_limit_s"));
    record.isRestartHeldBack = json.value(QLatin1String("restart_held_back")).toBool();
    record.sections = textsFrom(json.value(QLatin1String("to_apply")));
    record.isCommitted = json.value(QLatin1String("committed")).toBool();
    record.isForced = json.value(QLatin1String("forced")).toBool();
    record.triggers = QUuid(json.value(QLatin1String("triggers")).toString());
    record.elapsed = milliseconds(number("elapsed_ms"));
    record.moment = {json.value(QLatin1String("boot")).toString(), milliseconds(number("boot_ms"))};
}

} // namespace

QString nameOf(ChangeState state) {
    return stateNames.value(state);
}

std::optional<ChangeState> stateNamed(const QString &name) {
    const auto found = std::find(stateNames.cbegin(), stateNames.cend(), name);
    return found == stateNames.cend() ? std::nullopt : std::optional(found.key());
}

QString nameOf(SectionResult::Outcome outcome) {
    return outcomeNames.value(outcome);
}

QStringList unapplied(const QVector<SectionResult> &results) {
    QStringList names;
    for (const SectionResult &result : results)
        if (result.outcome != SectionResult::Applied)
            names.append(result.name);
    return names;
}

QString ChangeRecord::trigger(int index) const {
    return QStringLiteral("tmp/applying/") + QUuid::createUuidV5(triggers, QString::number(index)).toString();
}

milliseconds ChangeRecord::elapsedAt(const BootMoment &now) const {
    const milliseconds since = now.boot == moment.boot ? now.time - moment.time : now.time;
    return elapsed + std::max(since, milliseconds::zero());
}

std::optional<milliseconds> ChangeRecord::remainingAt(const BootMoment &now) const {
    if (!confirmWithin && !isRestartAwaited)
        return std::nullopt;
    return std::max(confirmWithin.value_or(restartLimit) - elapsedAt(now), milliseconds::zero());
}

void ChangeRecord::passTo(const BootMoment &now) {
    elapsed = elapsedAt(now);
    moment = now;
}

QJsonObject toJson(const ChangeRecord &record) {
    return {{QStringLiteral("id"), record.id},
            {QStringLiteral("state"), nameOf(record.state)},
            {QStringLiteral("reason"), orNull(record.reason)},
            {QStringLiteral("problem"), orNull(record.problem)},
            {QStringLiteral("command"), record.confirmWithin ? QStringLiteral("try") : QStringLiteral("apply")},
            {QStringLiteral("user"), record.origin.user},
            {QStringLiteral("sudo_user"), orNull(record.origin.sudoUser)},
            {QStringLiteral("client"), orNull(record.origin.client)},
            {QStringLiteral("started"), toJson(record.started)},
            {QStringLiteral("ended"), toJson(record.ended)},
            {QStringLiteral("document"),
             QJsonObject{{QStringLiteral("file"), record.file}, {QStringLiteral("sha256"), record.sha256}}},
            {QStringLiteral("counts"), toJson(record.counts)},
            {QStringLiteral("check"), toJson(record.check)},
            {QStringLiteral("sections"), toJson(record.results)},
            {QStringLiteral("put_back_sections"), toJson(record.putBackResults)},
            {QStringLiteral("conflicts"), QJsonArray::fromStringList(record.conflicts)},
            {QStringLiteral("post_action"), toJson(record.postAction)},
            {QStringLiteral("restarts"), record.restarts},
            {QStringLiteral("restart_awaited"), record.isRestartAwaited},
            {QStringLiteral("internal"), internals(record)}};
}

ChangeRecord changeRecordFrom(const QJsonObject &json) {
    const auto text = [&json](const char *name) { return textOrNull(json.value(QLatin1String(name))); };
    const std::optional<ChangeState> state = stateNamed(text("state"));
    const QString id = text("id");
    require(state && !id.isEmpty(), Error(QStringLiteral("impossible to read the record of a change")));

    ChangeRecord record;
    record.id = id;
    record.state = *state;
    record.reason = text("reason");
    record.problem = text("problem");
    record.origin = {text("user"), text("sudo_user"), text("client")};
    record.started = timeFrom(json.value(QLatin1String("started")));
    record.ended = timeFrom(json.value(QLatin1String("ended")));
    const QJsonObject document = json.value(QLatin1String("document")).toObject();
    record.file = document.value(QLatin1String("file")).toString();
    record.sha256 = document.value(QLatin1String("sha256")).toString();
    record.counts = countsFrom(json.value(QLatin1String("counts")).toObject());
    record.check = checkFrom(json.value(QLatin1String("check")));
    record.results = resultsFrom(json.value(QLatin1String("sections")));
    record.putBackResults = resultsFrom(json.value(QLatin1String("put_back_sections")));
    record.conflicts = textsFrom(json.value(QLatin1String("conflicts")));
    record.postAction = postActionFrom(json.value(QLatin1String("post_action")));
    record.restarts = json.value(QLatin1String("restarts")).toInt();
    record.isRestartAwaited = json.value(QLatin1String("restart_awaited")).toBool();
    readInternals(json.value(QLatin1String("internal")).toObject(), record);
    return record;
}

} // namespace quendar
