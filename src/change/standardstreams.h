// SPDX-License-Identifier: MIT
/// The streams that the program was started with.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace quendar {

/// Makes sure that no file which is opened later is taken for a standard stream, where the caller has closed one, and
/// that a reader who has gone does not end the program.
void secureStandardStreams();

/// The document in the file at @p path, or on standard input where it is "-". Throws Error.
QByteArray readDocumentAt(const QString &path);

/// Writes @p text to standard output. Throws Error when not all of it could be written.
void print(const QByteArray &text);

/// From now on the terminal does not stop this process, by its key or because it is in the background: who holds a
/// change must not be stopped, since it would neither be kept nor put back. What this process starts can be.
void ignoreStopKey();

/// Whether colours may be used there: on a terminal, unless NO_COLOR is set.
bool isColoured();

} // namespace quendar
