// SPDX-License-Identifier: MIT
/// The command line.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <variant>

namespace quendar {

/// A complete command line.
struct Arguments {
    QString filePath;
    QString command; // "-get" or "-set"
    QString category;
    bool noReboot = false;
};

/// A command line that is answered with the usage text, after a complaint unless that is empty.
struct UsageError {
    QString complaint;
};

/// Scans the arguments, the program's path first among them. The last of several `-settings`, `-get` and `-set`
/// counts; any argument that is not known ends the scan.
std::variant<Arguments, UsageError> scanArguments(const QStringList &arguments);

} // namespace quendar
