// SPDX-License-Identifier: MIT
/// How the commands open and write the settings file.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace quendar {

/// Opens @p file for a new document; what was in it is gone. A file that this makes is readable by its owner only,
/// since a document holds passphrases. Throws Error.
void openForExport(QFile &file);

/// Opens @p file to read a document. Only a regular file is opened: a pipe could keep the tool waiting and cannot be
/// read twice. Throws Error.
void openForImport(QFile &file);

/// Writes all of @p document to @p device, through to the system where that is a file. Throws Error naming the file.
void writeDocument(QIODevice &device, const QByteArray &document);

/// Throws Error for any category of settings but "all".
void requireSupportedCategory(const QString &category);

} // namespace quendar
