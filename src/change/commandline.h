// SPDX-License-Identifier: MIT
/// The command line of `quendar-change`.
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <optional>
#include <variant>

namespace quendar {

/// The options' names, without "--".
namespace option {
inline const QString json = QStringLiteral("json");
inline const QString showSecrets = QStringLiteral("show-secrets");
inline const QString withDocument = QStringLiteral("with-document");   // takes a file to write to
inline const QString output = QStringLiteral("output");                // likewise
inline const QString confirmWithin = QStringLiteral("confirm-within"); // takes a time
inline const QString check = QStringLiteral("check");                  // takes a command
inline const QString checkFor = QStringLiteral("check-for");           // takes a time
inline const QString applyLimit = QStringLiteral("apply-limit");       // likewise
inline const QString applyAll = QStringLiteral("apply-all");
inline const QString noReboot = QStringLiteral("no-reboot");
inline const QString detach = QStringLiteral("detach");
inline const QString force = QStringLiteral("force");
inline const QString forget = QStringLiteral("forget");
inline const QString all = QStringLiteral("all");
} // namespace option

/// A complete command line.
struct CommandLine {
    QString command;
    QString operand;                ///< a document's file, "-" for standard input, or a change's id; may be empty
    QMap<QString, QString> options; ///< those that were given, with their values

    bool has(const QString &option) const { return options.contains(option); }

    /// Empty where it was not given.
    QString value(const QString &option) const { return options.value(option); }

    /// Nothing where it was not given.
    std::optional<std::chrono::seconds> time(const QString &option) const;
};

/// A command line that is answered with a text, and ends the program with this status.
struct Answer {
    QString text;
    int status;
};

/// What the program can be asked for.
struct Command {
    enum Operand { None, File, Id, OptionalId };

    Operand operand;
    QStringList options;             ///< those that it takes
    QStringList required;            ///< those of them that must be there
    int (*run)(const CommandLine &); ///< returns the exit status; throws Error
};

/// By name.
using Commands = QMap<QString, Command>;

/// Reads the arguments, the program's path first among them.
std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments, const Commands &commands);

} // namespace quendar
