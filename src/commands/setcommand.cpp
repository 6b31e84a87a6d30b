// SPDX-License-Identifier: MIT
#include "commands/setcommand.h"

#include "commands/category.h"
#include "document/document.h"
#include "document/documentfile.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "registry/viewpaths.h"
#include "report/error.h"
#include "stages/applysection.h"
#include "stages/changedsections.h"
#include "stages/exportsettings.h"
#include "stages/postaction.h"
#include "stages/roomcheck.h"

#include <tessaroclient.h>

namespace quendar {

namespace {

/// The result when the apply service reports anything but success.
constexpr int notApplied = 6;

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
        const Document document = checkedDocument(readDocument(file));
        const ExportedSettings current = exportSettings();
        const QStringList changed = changedSections(document, current.document);
        requireRoom(document, current);
        applyDocument(document.text, applier);

        PostActionFile postAction;
        postAction.replace();
        failed = applySections(changed);
        const QString line = postAction.read(printWarning);
        startPostAction(postActionCommand(line, noReboot, qEnvironmentVariableIsSet("DISPLAY")));
        postAction.remove();
    } catch (const Error &error) {
        applier.rollback();
        throw Error(error.message());
    }
    if (!failed.isEmpty())
        throw Error(QStringLiteral("impossible to apply: ") + failed.join(QStringLiteral(", ")));
}

int SetCommand::applySection(TessaroClient &client, const QString &sectionKey) {
    const ApplyResult result = quendar::applySection(client, sectionKey);
    if (result.status != 0)
        return result.status;
    return result.isApplied() ? 0 : notApplied;
}

} // namespace quendar
