// SPDX-License-Identifier: MIT
/// The files that documents are read from and written to.
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

/// Puts @p document at @p path, in the place of what a regular file there holds: whole, or not at all. A device or a
/// pipe is written to. A file that this makes is readable by its owner only. Throws Error.
void replaceDocument(const QString &path, const QByteArray &document);

} // namespace quendar
