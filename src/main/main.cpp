// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "commands/setcommand.h"
#include "main/arguments.h"
#include "report/error.h"

#include <QtCore/QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr char usage[] = "Quendar system settings interpreter.\n"
                         "usage: quendarsettings -settings <filepath> -[set|get] <category> [-noreboot]\n"
                         "           -get all\n"
                         "           -set all\n";

[[noreturn]] void exitWithUsage(const UsageError &error) {
    if (!error.complaint.isEmpty())
        std::fprintf(stderr, "%s\n\n", error.complaint.toLocal8Bit().constData());
    std::fputs(usage, stderr);
    std::exit(EXIT_FAILURE);
}

std::unique_ptr<ICommand> makeCommand(const Arguments &arguments) {
    if (arguments.command == QLatin1String("-get"))
        return std::make_unique<GetCommand>(arguments.filePath, arguments.category);
    if (arguments.command == QLatin1String("-set"))
        return std::make_unique<SetCommand>(arguments.filePath, arguments.category, arguments.noReboot);
    throw Error(QStringLiteral("unexpected command: %1").arg(arguments.command));
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    // a network access manager that loads no plugins: the queries come from the tool itself
    QCoreApplication::setLibraryPaths({});

    const auto scanned = scanArguments(QCoreApplication::arguments());
    if (const auto *const error = std::get_if<UsageError>(&scanned))
        exitWithUsage(*error);

    try {
        const std::unique_ptr<ICommand> command = makeCommand(std::get<Arguments>(scanned));
        command->execute();
        std::exit(EXIT_SUCCESS);
    } catch (const Error &error) {
        std::fprintf(stderr, "error: %s\n", error.message().toLocal8Bit().constData());
        std::exit(EXIT_FAILURE);
    }
}
