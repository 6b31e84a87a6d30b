// SPDX-License-Identifier: MIT
#include "change/commandline.h"

#include "change/exitstatus.h"
#include "change/readable.h"

#include <QtCore/QCommandLineParser>

namespace quendar {

namespace {

constexpr char usage[] = "usage: quendar-change COMMAND FILE [OPTION...]\n"
                         "\n"
                         "  plan FILE [--with-document OUT] [--show-secrets]\n"
                         "      what an import of the document in FILE would do here; writes nothing to the device\n"
                         "      0 nothing to do, 2 something, 1 error\n"
                         "  verify FILE\n"
                         "      whether FILE, imported here, would come back as it is\n"
                         "      0 all comes back, 2 not all, 1 error\n"
                         "  redact FILE --output OTHER\n"
                         "      writes the document without its secrets\n"
                         "      0 done, 1 error\n"
                         "\n"
                         "FILE is - for standard input. With --json, each prints one JSON object.\n"
                         "quendar-change --help, --version\n";

const QString help = QStringLiteral("help");

void addOption(QCommandLineParser &parser, const QString &name) {
    const bool takesFile = name == option::withDocument || name == option::output;
    parser.addOption(QCommandLineOption(name, QString(), takesFile ? QStringLiteral("FILE") : QString()));
}

/// What the option that names a file to write to was given.
QString outputFile(const QCommandLineParser &parser) {
    for (const QString &name : {option::output, option::withDocument})
        if (parser.optionNames().contains(name))
            return parser.value(name);
    return {};
}

Answer complaint(const QString &text) {
    return {QStringLiteral("quendar-change: ") + readable(text) + QStringLiteral("\n\n") + QString::fromLatin1(usage),
            exitstatus::wrongUsage};
}

} // namespace

std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments, const Commands &commands) {
    const QString command = arguments.value(1);
    if (command == QLatin1String("--help") || command == QLatin1String("-h"))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (command == QLatin1String("--version"))
        return Answer{QStringLiteral("quendar-change " QUENDAR_VERSION "\n"), exitstatus::done};
    if (command.isEmpty())
        return complaint(QStringLiteral("a command is missing"));
    if (!commands.contains(command))
        return complaint(QStringLiteral("unknown command: ") + command);

    QCommandLineParser parser;
    addOption(parser, help);
    const QStringList options = commands.value(command).options;
    for (const QString &name : options)
        addOption(parser, name);
    if (!parser.parse(arguments.mid(1)))
        return complaint(parser.errorText());
    const QStringList given = parser.optionNames();
    if (given.contains(help))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (parser.positionalArguments().size() != 1)
        return complaint(QStringLiteral("%1 takes one FILE").arg(command));
    const QString written = outputFile(parser);
    if (options.contains(option::output) && written.isEmpty())
        return complaint(QStringLiteral("%1 takes --output OTHER").arg(command));
    if (written.startsWith(QLatin1Char('-')))
        return complaint(QStringLiteral("no file to write to: ") + written);
    return CommandLine{command, parser.positionalArguments().first(), written, given.contains(option::json),
                       given.contains(option::showSecrets)};
}

} // namespace quendar
