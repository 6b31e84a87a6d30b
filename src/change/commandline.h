// SPDX-License-Identifier: MIT
/// The command line of `quendar-change`.
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <variant>

namespace quendar {

/// The options' names, without "--".
namespace option {
inline const QString json = QStringLiteral("json");
inline const QString showSecrets = QStringLiteral("show-secrets");
inline const QString withDocument = QStringLiteral("with-document"); // takes a file to write to
inline const QString output = QStringLiteral("output");              // likewise
} // namespace option

/// A complete command line. What was not given is empty.
struct CommandLine {
    QString command;
    QString file;       ///< the document; "-" for standard input
    QString outputFile; ///< where the command writes a document to
    bool isJson;
    bool showsSecrets;
};

/// A command line that is answered with a text, and ends the program with this status.
struct Answer {
    QString text;
    int status;
};

/// What the program can be asked for.
struct Command {
    QStringList options;             ///< those that it takes
    int (*run)(const CommandLine &); ///< returns the exit status; throws Error
};

/// By name.
using Commands = QMap<QString, Command>;

/// Reads the arguments, the program's path first among them.
std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments, const Commands &commands);

} // namespace quendar
