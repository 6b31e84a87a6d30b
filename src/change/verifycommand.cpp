// SPDX-License-Identifier: MIT
#include "change/verifycommand.h"

#include "change/exitstatus.h"
#include "change/json.h"
#include "change/readable.h"
#include "change/standardstreams.h"
#include "planning/verification.h"

namespace quendar {

namespace {

QString listed(const QString &title, const QMap<QString, QString> &reasonsByPath) {
    QString text = reasonsByPath.isEmpty() ? QString() : title + QLatin1Char('\n');
    for (auto reason = reasonsByPath.cbegin(); reason != reasonsByPath.cend(); ++reason)
        text += QStringLiteral("  ") + readable(reason.key()) +
                (reason->isNull() ? QString() : QStringLiteral(": ") + *reason) + QLatin1Char('\n');
    return text;
}

QByteArray verificationText(const Verification &found) {
    QString text = listed(QStringLiteral("Lost:"), found.lost) + listed(QStringLiteral("Altered:"), found.altered);
    if (found.isOwnExport && !found.notCarried.isEmpty()) {
        text += QStringLiteral("Held by no export, and so on no other device:\n");
        for (const QString &path : found.notCarried.mid(0, maximumLines))
            text += QStringLiteral("  ") + readable(path) + QLatin1Char('\n');
        if (found.notCarried.size() > maximumLines)
            text += QStringLiteral("  … and %1 more\n").arg(found.notCarried.size() - maximumLines);
    }
    text += QStringLiteral("Settings of the document: %1, lost: %2, altered: %3")
                .arg(QString::number(found.settings), QString::number(found.lost.size()),
                     QString::number(found.altered.size()));
    if (!found.notCarried.isEmpty())
        text += QStringLiteral("; keys that are not in it: %1").arg(found.notCarried.size());
    return (text + QLatin1Char('\n')).toUtf8();
}

} // namespace

int runVerify(const CommandLine &commandLine) {
    const Verification found = verifyDocument(checkedDocument(readDocumentAt(commandLine.operand)));
    print(commandLine.has(option::json) ? verificationJson(found) : verificationText(found));
    return found.isComplete() ? exitstatus::done : exitstatus::differs;
}

} // namespace quendar
