// SPDX-License-Identifier: MIT
#include "change/json.h"

#include "change/readable.h"
#include "planning/changesetjson.h"
#include "planning/places.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace quendar {

namespace {

QByteArray printed(QJsonObject object) {
    object.insert(QStringLiteral("format"), 1);
    return readableJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

QJsonArray changesJson(const ChangeSet &changes, const Masking &masking) {
    QJsonArray list;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        const Change shown = masking.shown(path, *change);
        const bool isKey = change->before.isKey() || change->after.isKey();
        list.append(QJsonObject{{QStringLiteral("path"), path},
                                {QStringLiteral("section"), sectionOf(path)},
                                {QStringLiteral("before"), toJson(shown.before)},
                                {QStringLiteral("after"), toJson(shown.after)},
                                {QStringLiteral("secret"), isKey && masking.isSecret(path)}});
    }
    return list;
}

QJsonArray entriesJson(const QVector<EntryChange> &entries, const Masking &masking) {
    QJsonArray list;
    for (const EntryChange &entry : entries)
        list.append(
            QJsonObject{{QStringLiteral("path"), entry.path},
                        {QStringLiteral("kind"), kindOf(entry.path)},
                        {QStringLiteral("change"), entry.isMade ? QStringLiteral("made") : QStringLiteral("dropped")},
                        {QStringLiteral("name"), masking.shown(nameKeyOf(entry.path), entry.name)},
                        {QStringLiteral("id_made_up"), entry.isIdMadeUp}});
    return list;
}

QJsonArray unknownJson(const QVector<Warning> &unknown, const Masking &masking) {
    QJsonArray list;
    for (const Warning &warning : unknown)
        list.append(QJsonObject{{QStringLiteral("path"), warning.path},
                                {QStringLiteral("text"), masking.shown(warning.path, warning.value)},
                                {QStringLiteral("secret"), masking.isSecret(warning.path)}});
    return list;
}

QJsonArray warningsJson(const QVector<Warning> &warnings, const Masking &masking) {
    QJsonArray list;
    for (const Warning &warning : warnings)
        list.append(lineOf(masking.shown(warning)).trimmed());
    return list;
}

QJsonArray reasonsJson(const QMap<QString, QString> &reasonsByPath) {
    QJsonArray list;
    for (auto reason = reasonsByPath.cbegin(); reason != reasonsByPath.cend(); ++reason)
        list.append(QJsonObject{{QStringLiteral("path"), reason.key()},
                                {QStringLiteral("reason"), reason->isNull() ? QJsonValue() : QJsonValue(*reason)}});
    return list;
}

QJsonObject changeJson(const ChangeStatus &status) {
    QJsonObject object = toJson(status.record);
    object.remove(QStringLiteral("internal"));
    const auto left = status.remaining;
    object.insert(QStringLiteral("remaining_s"),
                  left ? QJsonValue(double(std::chrono::floor<std::chrono::seconds>(*left).count())) : QJsonValue());
    object.insert(QStringLiteral("watched"), status.isWatched);
    object.insert(QStringLiteral("conflicts"),
                  status.conflicts ? QJsonValue(QJsonArray::fromStringList(*status.conflicts)) : QJsonValue());
    return object;
}

} // namespace

QByteArray errorJson(const QString &message, const QString &open) {
    QJsonObject object{{QStringLiteral("error"), message}};
    if (!open.isEmpty())
        object.insert(QStringLiteral("open"), open);
    return printed(object);
}

QByteArray statusJson(const ChangeStatus &status) {
    return printed(changeJson(status));
}

QByteArray historyJson(const QVector<ChangeStatus> &statuses) {
    QJsonArray changes;
    for (const ChangeStatus &status : statuses)
        changes.append(changeJson(status));
    return printed({{QStringLiteral("changes"), changes}});
}

QByteArray noChangeJson() {
    return printed({{QStringLiteral("id"), QJsonValue()}, {QStringLiteral("state"), QStringLiteral("none")}});
}

QByteArray planJson(const ImportPlan &plan, const Masking &masking, const QString &open) {
    return printed({{QStringLiteral("changes"), changesJson(plan.changes, masking)},
                    {QStringLiteral("entries"), entriesJson(plan.entries, masking)},
                    {QStringLiteral("unknown"), unknownJson(plan.unknown, masking)},
                    {QStringLiteral("warnings"), warningsJson(plan.warnings, masking)},
                    {QStringLiteral("sections"), QJsonArray::fromStringList(plan.sections)},
                    {QStringLiteral("open"), open.isEmpty() ? QJsonValue() : QJsonValue(open)}});
}

QByteArray verificationJson(const Verification &verification) {
    return printed({{QStringLiteral("settings"), verification.settings},
                    {QStringLiteral("lost"), reasonsJson(verification.lost)},
                    {QStringLiteral("altered"), reasonsJson(verification.altered)},
                    {QStringLiteral("not_carried"), QJsonArray::fromStringList(verification.notCarried)}});
}

QByteArray redactionJson(const Redaction &redaction) {
    QJsonArray entries;
    for (const DocumentEntry &entry : redaction.entries)
        entries.append(QJsonObject{{QStringLiteral("path"), entry.path},
                                   {QStringLiteral("kind"), kindOf(entry.path)},
                                   {QStringLiteral("name"), entry.name}});
    return printed({{QStringLiteral("dropped"), QJsonArray::fromStringList(redaction.dropped)},
                    {QStringLiteral("entries"), entries}});
}

} // namespace quendar
