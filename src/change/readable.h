// SPDX-License-Identifier: MIT
/// Texts from documents and registries on a terminal.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace quendar {

/// Lines of one list that are shown; a screen has some more.
constexpr int maximumLines = 20;

/// @p text on one line: what a terminal would not print, or would obey, is escaped as in C.
QString readable(const QString &text);

/// @p text readable and in double quotes, quotes and backslashes in it escaped; "…" stands for the end of a long one.
QString quoted(const QString &text);

/// The two of them with an arrow between. Where both are cut, they are shown from where they differ.
QString quotedChange(const QString &before, const QString &after);

/// JSON in which only what prints stands as it is.
QByteArray readableJson(const QByteArray &json);

} // namespace quendar
