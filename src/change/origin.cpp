// SPDX-License-Identifier: MIT
#include "change/origin.h"

#include <pwd.h>
#include <unistd.h>

namespace quendar {

ChangeRecord::Origin originOfThisProcess() {
    const passwd *const entry = ::getpwuid(::getuid());
    const QString user = entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(::getuid());
    const QString connection = qEnvironmentVariable("SSH_CONNECTION", qEnvironmentVariable("SSH_CLIENT"));
    return {user, qEnvironmentVariable("SUDO_USER"),
            connection.isEmpty() ? QString() : connection.section(QLatin1Char(' '), 0, 0)};
}

} // namespace quendar
