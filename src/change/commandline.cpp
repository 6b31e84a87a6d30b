// SPDX-License-Identifier: MIT
#include "change/commandline.h"

#include "change/exitstatus.h"
#include "change/readable.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QRegularExpression>

namespace quendar {

namespace {

using std::chrono::seconds;

constexpr char usage[] =
    "usage: quendar-change COMMAND [OPERAND] [OPTION...]\n"
    "\n"
    "  plan FILE [--with-document OUT] [--show-secrets]\n"
    "      what an import of the document in FILE would do here; writes nothing to the device\n"
    "      0 nothing to do, 2 something, 1 error\n"
    "  apply FILE [--check COMMAND] [--check-for TIME] [--apply-all] [--apply-limit TIME] [--no-reboot]\n"
    "      imports FILE as a whole; puts everything back when a section or the check fails\n"
    "      0 done, 3 put back, 1 error and nothing changed, 4 another change is open, 5 not put back yet\n"
    "  try FILE --confirm-within TIME [--detach] [options of apply]\n"
    "      the same, and puts everything back unless it is confirmed in time\n"
    "      0 waits for its confirmation, otherwise as apply\n"
    "  confirm ID\n"
    "      keeps the change\n"
    "      0 kept, 3 too late, 1 no such change, or not yet\n"
    "  revert [ID] [--force] [--no-reboot], revert --forget\n"
    "      puts back the change that waits, or the last one that was kept\n"
    "      0 put back, 3 but for some parts, 1 nothing to put back, 5 not put back yet\n"
    "  status [ID] [--all]\n"
    "      the change that is open or was last; the last 20\n"
    "  resume\n"
    "      goes on with what a kill or a restart has interrupted\n"
    "  verify FILE\n"
    "      whether FILE, imported here, would come back as it is\n"
    "      0 all comes back, 2 not all, 1 error\n"
    "  redact FILE --output OTHER\n"
    "      writes the document without its secrets\n"
    "      0 done, 1 error\n"
    "\n"
    "FILE is - for standard input. TIME is 90s, 10min, 1h. With --json, each prints one JSON object.\n"
    "quendar-change --help, --version\n";

const QString help = QStringLiteral("help");

constexpr seconds shortestConfirmation(10);
constexpr seconds longestTime = std::chrono::hours(7 * 24);

/// What an option takes, as it is called in a complaint; null where it takes nothing.
QString valueOf(const QString &name) {
    if (name == option::withDocument || name == option::output)
        return QStringLiteral("FILE");
    if (name == option::confirmWithin || name == option::checkFor || name == option::applyLimit)
        return QStringLiteral("TIME");
    return name == option::check ? QStringLiteral("COMMAND") : QString();
}

std::optional<seconds> timeFrom(const QString &text) {
    static const QRegularExpression form(QStringLiteral("\\A([1-9][0-9]{0,6})(s|min|h)\\z"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QString unit = match.captured(2);
    const int factor = unit == QLatin1String("h") ? 3600 : unit == QLatin1String("min") ? 60 : 1;
    const seconds time(qint64(match.captured(1).toInt()) * factor);
    return time <= longestTime ? std::optional(time) : std::nullopt;
}

/// What is wrong with what an option was given; null where nothing is.
QString complaintAbout(const QString &name, const QString &value) {
    const QString kind = valueOf(name);
    if (kind == QLatin1String("FILE") && (value.isEmpty() || value.startsWith(QLatin1Char('-'))))
        return QStringLiteral("no file to write to: ") + value;
    if (kind == QLatin1String("COMMAND") && value.trimmed().isEmpty())
        return QStringLiteral("--%1 takes a command").arg(name);
    if (kind != QLatin1String("TIME"))
        return {};
    const std::optional<seconds> time = timeFrom(value);
    if (!time)
        return QStringLiteral("no time such as 90s, 10min, 1h, of at most seven days: ") + value;
    if (name == option::confirmWithin && *time < shortestConfirmation)
        return QStringLiteral("too short to confirm, at least 10s: ") + value;
    return {};
}

QString complaintAbout(const CommandLine &given, const Command &command) {
    for (const QString &name : command.required)
        if (!given.has(name))
            return QStringLiteral("%1 takes --%2 %3").arg(given.command, name, valueOf(name));
    for (auto option = given.options.cbegin(); option != given.options.cend(); ++option) {
        const QString complaint = complaintAbout(option.key(), *option);
        if (!complaint.isNull())
            return complaint;
    }
    if (given.has(option::checkFor) && !given.has(option::check))
        return QStringLiteral("--check-for takes --check COMMAND");
    if ((given.has(option::forget) || given.has(option::all)) && !given.operand.isEmpty())
        return QStringLiteral("no ID goes with that option");
    return {};
}

/// Whether @p operands are what @p command takes.
bool areOperandsOf(const Command &command, const QStringList &operands) {
    const bool isOne = operands.size() == 1 && !operands.first().isEmpty();
    switch (command.operand) {
    case Command::None:
        return operands.isEmpty();
    case Command::File:
    case Command::Id:
        return isOne;
    case Command::OptionalId:
        return operands.isEmpty() || isOne;
    }
    return false;
}

QString operandComplaint(const QString &name, const Command &command) {
    switch (command.operand) {
    case Command::None:
        return QStringLiteral("%1 takes nothing").arg(name);
    case Command::File:
        return QStringLiteral("%1 takes one FILE").arg(name);
    case Command::Id:
        return QStringLiteral("%1 takes one ID").arg(name);
    case Command::OptionalId:
        return QStringLiteral("%1 takes one ID at most").arg(name);
    }
    return {};
}

Answer complaint(const QString &text) {
    return {QStringLiteral("quendar-change: ") + readable(text) + QStringLiteral("\n\n") + QString::fromLatin1(usage),
            exitstatus::wrongUsage};
}

} // namespace

std::optional<seconds> CommandLine::time(const QString &option) const {
    return timeFrom(value(option));
}

std::variant<CommandLine, Answer> readCommandLine(const QStringList &arguments, const Commands &commands) {
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h"))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (name == QLatin1String("--version"))
        return Answer{QStringLiteral("quendar-change " QUENDAR_VERSION "\n"), exitstatus::done};
    if (name.isEmpty())
        return complaint(QStringLiteral("a command is missing"));
    if (!commands.contains(name))
        return complaint(QStringLiteral("unknown command: ") + name);

    const Command command = commands.value(name);
    QCommandLineParser parser;
    parser.addOption(QCommandLineOption(help));
    for (const QString &option : command.options)
        parser.addOption(QCommandLineOption(option, QString(), valueOf(option)));
    if (!parser.parse(arguments.mid(1)))
        return complaint(parser.errorText());
    if (parser.isSet(help))
        return Answer{QString::fromLatin1(usage), exitstatus::done};
    if (!areOperandsOf(command, parser.positionalArguments()))
        return complaint(operandComplaint(name, command));

    CommandLine given{name, parser.positionalArguments().value(0), {}};
    for (const QString &option : parser.optionNames())
        given.options.insert(option, parser.value(option));
    const QString wrong = complaintAbout(given, command);
    if (!wrong.isNull())
        return complaint(wrong);
    return given;
}

} // namespace quendar
