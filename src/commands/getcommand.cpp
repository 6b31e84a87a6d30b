// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"

#include "commands/settingsfile.h"
#include "stages/exportsettings.h"

#include <tessaroclient.h>

namespace quendar {

GetCommand::GetCommand(const QString &filePath, const QString &wantedCategory)
    : file(filePath), category(wantedCategory) {
    openForExport(file);
    requireSupportedCategory(category);
}

void GetCommand::execute() {
    exportConfig(&file);
    file.close();
}

void GetCommand::exportConfig(QIODevice *output) {
    TessaroClient client;
    writeDocument(*output, exportSettings(client).document);
}

} // namespace quendar
