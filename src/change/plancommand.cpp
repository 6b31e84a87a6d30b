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

namespace quendar {

int runPlan(const CommandLine &commandLine) {
    const Masking masking(Secrets::ofDevice(), commandLine.showsSecrets);
    PlanningClient client;
    const ImportPlan plan = planImport(checkedDocument(readDocumentAt(commandLine.file)), client);
    if (!commandLine.outputFile.isEmpty())
        replaceDocument(commandLine.outputFile, exportSettings(client).document);
    print(commandLine.isJson ? planJson(plan, masking) : planText(plan, masking, isColoured()));
    return plan.isEmpty() ? exitstatus::done : exitstatus::differs;
}

} // namespace quendar
