// SPDX-License-Identifier: MIT
#include "change/redactcommand.h"

#include "change/exitstatus.h"
#include "change/json.h"
#include "change/readable.h"
#include "change/standardstreams.h"
#include "document/documentfile.h"
#include "planning/places.h"
#include "planning/redaction.h"

namespace quendar {

namespace {

QByteArray redactionText(const Redaction &redaction) {
    QString text;
    for (const QString &path : redaction.dropped)
        text += QStringLiteral("  - ") + readable(path) + QLatin1Char('\n');
    text += QStringLiteral("Secrets left out: %1\n").arg(redaction.dropped.size());
    if (!redaction.entries.isEmpty())
        text += QStringLiteral("A device that does not have these has its defaults in their place:\n");
    for (const DocumentEntry &entry : redaction.entries)
        text +=
            QStringLiteral("  %1 %2 %3\n").arg(readable(sectionOf(entry.path)), kindOf(entry.path), quoted(entry.name));
    return text.toUtf8();
}

} // namespace

int runRedact(const CommandLine &commandLine) {
    const Redaction redaction = redacted(checkedDocument(readDocumentAt(commandLine.operand)), Secrets::ofDevice());
    replaceDocument(commandLine.value(option::output), redaction.document);
    print(commandLine.has(option::json) ? redactionJson(redaction) : redactionText(redaction));
    return exitstatus::done;
}

} // namespace quendar
