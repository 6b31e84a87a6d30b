// SPDX-License-Identifier: MIT
#include "main/arguments.h"

namespace quendar {

std::variant<Arguments, UsageError> scanArguments(const QStringList &arguments) {
    Arguments scanned;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        const bool isFile = argument == QLatin1String("-settings");
        const bool isCommand = argument == QLatin1String("-set") || argument == QLatin1String("-get");
        if ((isFile || isCommand) && ++i == arguments.size())
            return UsageError();

        if (isFile) {
            scanned.filePath = arguments.at(i);
        } else if (isCommand) {
            scanned.command = argument;
            scanned.category = arguments.at(i);
        } else if (argument == QLatin1String("-noreboot")) {
            scanned.noReboot = true;
        } else {
            return UsageError{QStringLiteral("unexpected argument: ") + argument};
        }
    }

    if (scanned.filePath.isNull() || scanned.command.isNull() || scanned.category.isNull())
        return UsageError();
    if (scanned.category != QLatin1String("all"))
        return UsageError{QStringLiteral("unsupported category: ") + scanned.category};
    return scanned;
}

} // namespace quendar
