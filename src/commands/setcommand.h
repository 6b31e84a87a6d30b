// SPDX-License-Identifier: MIT
/// The import command.
#pragma once

#include "commands/icommand.h"

#include <QtCore/QFile>
#include <QtCore/QString>

class TessaroClient;

namespace quendar {

/// Imports a configuration document into the registry, has the changed sections applied and starts the post-action.
class SetCommand : public ICommand {
public:
    /// Opens the file. Throws Error when that fails, or for a category other than "all".
    SetCommand(const QString &filePath, const QString &wantedCategory, bool suppressReboot);

    /// Throws Error; what was not committed by then is rolled back. Committed already may be sessions that the
    /// document adds, sessions and printers that it drops, and what stands before the end of a nested `lumo_config`.
    /// When a section could not be applied, the document is in the registry all the same.
    void execute() override;

    /// Hands the section at @p sectionKey to the apply service and waits, without a limit, until it is done. Returns
    /// 0 when the section is applied, the status of a request that was refused, or 6.
    static int applySection(TessaroClient &client, const QString &sectionKey);

private:
    QFile file;
    QString category;
    bool noReboot;
};

} // namespace quendar
