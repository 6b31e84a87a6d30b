// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "commands/setcommand.h"
#include "main/arguments.h"
#include "report/error.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

using namespace quendar;

namespace {

constexpr char usage[] = "Quendar system settings interpreter.\n"
                         "usage: quendarsettings -settings <filepath> -[set|get] <category> [-noreboot]\n"
                         "           -get all\n"
                         "           -set all\n";

int answerWithUsage(const UsageError &error) {
    if (!error.complaint.isEmpty())
        std::fprintf(stderr, "%s\n\n", error.complaint.toLocal8Bit().constData());
    std::fputs(usage, stderr);
    return EXIT_FAILURE;
}

std::unique_ptr<ICommand> makeCommand(const Arguments &arguments) {
    if (arguments.command == QLatin1String("-get"))
        return std::make_unique<GetCommand>(arguments.filePath, arguments.category);
    if (arguments.command == QLatin1String("-set"))
        return std::make_unique<SetCommand>(arguments.filePath, arguments.category, arguments.noReboot);
    throw Error(QStringLiteral("unexpected command: %1").arg(arguments.command));
}

int runCommand(const Arguments &arguments, std::unique_ptr<ICommand> &command) {
    try {
        command = makeCommand(arguments);
        command->execute();
        return EXIT_SUCCESS;
    } catch (const Error &error) {
        std::fprintf(stderr, "error: %s\n", error.message().toLocal8Bit().constData());
        command.reset();
        return EXIT_FAILURE;
    }
}

bool isAlone() {
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() == 1;
}

/// Ends the process. The engine's network access manager has started a thread that may not even have got to its first
/// line; where `exit` destroys Qt's globals under it, it crashes. The application waits for it, for some seconds.
[[noreturn]] void end(std::optional<QCoreApplication> &application, int status) {
    application.reset();
    if (!isAlone())
        std::_Exit(status);
    std::exit(status);
}

} // namespace

int main(int argc, char *argv[]) {
    std::optional<QCoreApplication> application(std::in_place, argc, argv);
    // a network access manager that loads no plugins: the queries come from the tool itself
    QCoreApplication::setLibraryPaths({});

    std::unique_ptr<ICommand> command; // one that has succeeded is not destroyed
    const auto scanned = scanArguments(QCoreApplication::arguments());
    const auto *const usageError = std::get_if<UsageError>(&scanned);
    const int status = usageError ? answerWithUsage(*usageError) : runCommand(std::get<Arguments>(scanned), command);

    end(application, status);
}
