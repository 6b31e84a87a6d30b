// SPDX-License-Identifier: MIT
/// Texts from documents and registries on a terminal.
#pragma once

#include <QtCore/QString>

namespace quendar {

/// @p text on one line: what a terminal would not print, or would obey, is escaped as in C.
QString readable(const QString &text);

/// The beginning of @p text, readable and in double quotes, with "…" for a longer rest.
QString quoted(const QString &text);

} // namespace quendar
