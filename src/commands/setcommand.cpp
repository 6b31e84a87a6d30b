// SPDX-License-Identifier: MIT
#include "commands/setcommand.h"

#include "commands/getcommand.h"
#include "commands/settingsfile.h"
#include "document/charreferences.h"
#include "document/documentscan.h"
#include "document/plaindocument.h"
#include "engine/limits.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "registry/viewpaths.h"
#include "report/error.h"
#include "stages/changedsections.h"
#include "stages/postaction.h"
#include <tessaroclient.h>

#include <QtCore/QBuffer>

namespace {

NamedDocument currentSettings() {
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    GetCommand::exportConfig(&buffer);
    const auto names = namesOfPlainDocument(buffer.data());
    if (!names) // an export is of that form, unless it is beyond the limit
        throw Error(tooManyNames());
    return {buffer.data(), *names};
}

void requireSupportedReferences(const QString &text) {
    if (const int line = lineOfUnsupportedReference(text))
        throw Error(atLine(unsupportedReference(), line));
}

/// Has each section applied in turn; returns the names of those that were not, each once.
QStringList applySections(const QStringList &sections) {
    TessaroClient client;
    QStringList failed;
    for (const QString &section : sections)
        if (SetCommand::applySection(client, viewRoot() + QLatin1Char('/') + section) != 0)
            failed.append(section);
    failed.removeDuplicates();
    return failed;
}

} // namespace

SetCommand::SetCommand(const QString &filePath, const QString &wantedCategory, bool suppressReboot)
    : file(filePath), category(wantedCategory), noReboot(suppressReboot) {
    openForImport(file);
    requireSupportedCategory(category);
}

void SetCommand::execute() {
    LumoConfigViewModifier applier;
    QStringList failed;
    try {
        const QByteArray document = readDocument(file);
        const QString text = decodedDocument(document);
        const Names names = checkDocument(document);
        requireSupportedReferences(text);

        const QStringList changed = changedSections({document, names}, currentSettings());
        applyDocument(text, applier);

        PostAction postAction;
        failed = applySections(changed);
        postAction.run(noReboot);
    } catch (const Error &error) {
        applier.rollback();
        throw Error(error.message());
    }
    if (!failed.isEmpty())
        throw Error(QStringLiteral("impossible to apply: ") + failed.join(QStringLiteral(", ")));
}
