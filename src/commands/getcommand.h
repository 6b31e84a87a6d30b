// SPDX-License-Identifier: MIT
/// The export command.
#pragma once

#include "commands/icommand.h"

#include <QtCore/QFile>
#include <QtCore/QString>

namespace quendar {

/// Exports the settings in the registry into a file as one configuration document.
class GetCommand : public ICommand {
public:
    /// Opens the file, which empties it. Throws Error when that fails, or for a category other than "all".
    GetCommand(const QString &filePath, const QString &wantedCategory);

    /// A registry that fails leaves the file empty.
    void execute() override;

    /// Writes the document to @p output, which is open for writing and stays the caller's. Throws TessaroError when
    /// the registry fails, Error when the engine does or when the document could not be written whole.
    static void exportConfig(QIODevice *output);

private:
    QFile file;
    QString category;
};

} // namespace quendar
