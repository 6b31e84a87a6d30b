// SPDX-License-Identifier: MIT
/// Files that a power cut leaves whole.
#pragma once

#include "trial/descriptor.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace quendar {

/// Replaces the file at @p path by one that holds @p content and its checksum, mode 0600. When this returns, the new
/// file is on the disk; at any point before, the old one is. Throws Error when that fails; the old one is there then.
void writeDurably(const QString &path, const QJsonObject &content);

/// The content of such a file; nothing where there is none. Throws Error, which says what to do, for a file that is
/// damaged, belongs to somebody else, or was written by a newer version.
std::optional<QJsonObject> readDurable(const QString &path);

/// Moves or removes a file, be it there or not. On the disk when this returns. Throws Error.
void renameDurably(const QString &from, const QString &to);
void removeDurably(const QString &path);

/// Makes a folder that only this user can enter, unless something stands there already. On the disk when this returns.
/// Throws Error.
void makeFolderDurably(const QString &path);

/// Throws Error, which says what to do, unless @p file, opened from @p path, is a regular file of this user or root
/// that nobody else may write.
void requireOwn(const Descriptor &file, const QString &path);

/// The error of the last system call that failed at @p path: "impossible to WHAT PATH: REASON".
[[noreturn]] void throwSystemError(const char *what, const QString &path);

} // namespace quendar
