// SPDX-License-Identifier: MIT
/// The command line of `quendar-change`.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <variant>

namespace quendar {

/// A complete command line. What was not given is empty.
struct CommandLine {
    QString command;
    QString file; ///< the document; "-" for standard input
    QString outputFile;
    QString afterwardsFile;
    bool isJson;
    bool showsSecrets;
};

/// A command line that is answered with a text, and ends the program with this status.
struct Answer {
    QString text;
    int status;
};

/// Reads the arguments, the program's path first among them.
std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments);

} // namespace quendar
