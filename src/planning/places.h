// SPDX-License-Identifier: MIT
/// Where a path lies among the settings.
#pragma once

#include <QtCore/QString>
#include <QtCore/QUuid>

namespace quendar {

/// The name of the section that @p path lies in; empty for a path outside of the settings.
QString sectionOf(const QString &path);

/// The path of the innermost session or printer that @p path lies in, which may be the path itself; empty where it lies
/// in none.
QString entryOf(const QString &path);

/// Whether that is a printer rather than a session.
bool isInPrinter(const QString &path);

/// "printer" or "session", likewise.
QString kindOf(const QString &path);

/// The id that the session or printer at @p entry is named by; null where its name is none.
QUuid idOf(const QString &entry);

/// The path of the key that holds the name of the session or printer at @p entry.
QString nameKeyOf(const QString &entry);

} // namespace quendar
