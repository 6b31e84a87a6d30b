// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"

#include "commands/category.h"
#include "document/documentfile.h"
#include "stages/exportsettings.h"

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
    writeDocument(*output, exportSettings().document);
}

} // namespace quendar
