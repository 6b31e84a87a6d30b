// SPDX-License-Identifier: MIT
#include "change/plancommand.h"

#include "change/exitstatus.h"
#include "change/json.h"
#include "change/plantext.h"
#include "change/standardstreams.h"
#include "document/document.h"
#include "document/documentfile.h"
#include "planning/importplan.h"
#include "planning/planningclient.h"
#include "stages/exportsettings.h"
#include "trial/statefolder.h"

namespace quendar {

namespace {

/// The id of the change that is open; empty where there is none, or where this user may not know of it.
QString openChange() {
    const StateFolder folder;
    const std::optional<ChangeRecord> last = folder.isReadable() ? folder.record() : std::nullopt;
    return last && last->isOpen() ? last->id : QString();
}

} // namespace

int runPlan(const CommandLine &commandLine) {
    const Masking masking(Secrets::ofDevice(), commandLine.has(option::showSecrets));
    PlanningClient client;
    const ImportPlan plan = planImport(checkedDocument(readDocumentAt(commandLine.operand)), client);
    if (commandLine.has(option::withDocument))
        replaceDocument(commandLine.value(option::withDocument), exportSettings(client).document);
    const QString open = openChange();
    print(commandLine.has(option::json) ? planJson(plan, masking, open) : planText(plan, masking, open, isColoured()));
    return plan.isEmpty() && open.isEmpty() ? exitstatus::done : exitstatus::differs;
}

} // namespace quendar
