// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "commands/setcommand.h"
#include "engine/application.h"
#include "main/arguments.h"
#include "report/error.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

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

} // namespace

int main(int argc, char *argv[]) {
    Application application(argc, argv);
    std::unique_ptr<ICommand> command; // one that has succeeded is not destroyed
    const auto scanned = scanArguments(QCoreApplication::arguments());
    const auto *const usageError = std::get_if<UsageError>(&scanned);
    application.end(usageError ? answerWithUsage(*usageError) : runCommand(std::get<Arguments>(scanned), command));
}
