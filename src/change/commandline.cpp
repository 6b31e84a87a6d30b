// SPDX-License-Identifier: MIT
#include "change/commandline.h"

#include "change/exitstatus.h"
#include "change/readable.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QMap>

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
const QString json = QStringLiteral("json");
const QString showSecrets = QStringLiteral("show-secrets");
const QString withDocument = QStringLiteral("with-document");
const QString output = QStringLiteral("output");

/// The options of each command, but for `--help`.
QMap<QString, QStringList> commands() {
    return {{QStringLiteral("plan"), {json, showSecrets, withDocument}},
            {QStringLiteral("verify"), {json}},
            {QStringLiteral("redact"), {json, output}}};
}

void addOption(QCommandLineParser &parser, const QString &name) {
    const bool takesFile = name == withDocument || name == output;
    parser.addOption(QCommandLineOption(name, QString(), takesFile ? QStringLiteral("FILE") : QString()));
}

Answer complaint(const QString &text) {
    return {QStringLiteral("quendar-change: ") + readable(text) + QStringLiteral("\n\n") + QString::fromLatin1(usage),
            exitstatus::wrongUsage};
}

} // namespace

std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments) {
    const QString command = arguments.value(1);
    if (command == QLatin1String("--help") || command == QLatin1String("-h"))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (command == QLatin1String("--version"))
        return Answer{QStringLiteral("quendar-change " QUENDAR_VERSION "\n"), exitstatus::done};
    if (command.isEmpty())
        return complaint(QStringLiteral("a command is missing"));
    if (!commands().contains(command))
        return complaint(QStringLiteral("unknown command: ") + command);

    QCommandLineParser parser;
    addOption(parser, help);
    for (const QString &option : commands().value(command))
        addOption(parser, option);
    if (!parser.parse(arguments.mid(1)))
        return complaint(parser.errorText());
    const auto isSet = [given = parser.optionNames()](const QString &option) { return given.contains(option); };
    const auto valueOf = [&](const QString &option) { return isSet(option) ? parser.value(option) : QString(); };
    if (isSet(help))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (parser.positionalArguments().size() != 1)
        return complaint(QStringLiteral("%1 takes one FILE").arg(command));
    if (command == QLatin1String("redact") && !isSet(output))
        return complaint(QStringLiteral("redact takes --output OTHER"));
    return CommandLine{command,         parser.positionalArguments().first(),
                       valueOf(output), valueOf(withDocument),
                       isSet(json),     isSet(showSecrets)};
}

} // namespace quendar
