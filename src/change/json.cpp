// SPDX-License-Identifier: MIT
#include "change/json.h"

#include "change/readable.h"
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

QJsonValue json(const Node &node) {
    switch (node.kind) {
    case Node::Absent:
        break;
    case Node::Directory:
        return QJsonObject();
    case Node::Key:
        return node.text;
    }
    return QJsonValue::Null;
}

QJsonArray changesJson(const ChangeSet &changes, const Masking &masking) {
    QJsonArray list;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        const Change shown = masking.shown(path, *change);
        const bool isKey = change->before.isKey() || change->after.isKey();
        list.append(QJsonObject{{QStringLiteral("path"), path},
                                {QStringLiteral("section"), sectionOf(path)},
                                {QStringLiteral("before"), json(shown.before)},
                                {QStringLiteral("after"), json(shown.after)},
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

} // namespace

QByteArray errorJson(const QString &message) {
    return printed({{QStringLiteral("error"), message}});
}

QByteArray planJson(const ImportPlan &plan, const Masking &masking) {
    return printed({{QStringLiteral("changes"), changesJson(plan.changes, masking)},
                    {QStringLiteral("entries"), entriesJson(plan.entries, masking)},
                    {QStringLiteral("unknown"), unknownJson(plan.unknown, masking)},
                    {QStringLiteral("warnings"), warningsJson(plan.warnings, masking)},
                    {QStringLiteral("sections"), QJsonArray::fromStringList(plan.sections)}});
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
