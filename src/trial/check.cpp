// SPDX-License-Identifier: MIT
#include "trial/check.h"

#include <cerrno>
#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quendar {

namespace {

constexpr std::chrono::seconds pauseBetweenRuns(1);

volatile sig_atomic_t running = 0; // the process group of the command

[[noreturn]] void giveUp(int /*signal*/) {
    if (running > 0)
        ::kill(-running, SIGKILL);
    ::_exit(1);
}

[[noreturn]] void becomeShell(const QByteArray &command) {
    ::setpgid(0, 0);
    ::execl("/bin/sh", "sh", "-c", command.constData(), nullptr);
    ::_exit(127);
}

bool hasSucceeded(const QByteArray &command) {
    const pid_t process = ::fork();
    if (process == 0)
        becomeShell(command);
    if (process < 0)
        return false;
    ::setpgid(process, process); // whoever is first
    running = process;
    int status = -1;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    running = 0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

bool passesCheck(const QString &command, std::chrono::seconds limit, int lock, const Tick &tick) {
    HelperProcess helper({QStringLiteral("run-check"), QString::number(limit.count()), command}, lock);
    return helper.ask({}, tick).has_value();
}

int runCheck(const QString &command, std::chrono::seconds limit) {
    HelperTask task;
    std::signal(SIGALRM, giveUp);
    ::alarm(unsigned(limit.count()));
    while (!hasSucceeded(command.toLocal8Bit()))
        std::this_thread::sleep_for(pauseBetweenRuns);
    ::alarm(0);
    return task.answer("passed") ? 0 : 1;
}

} // namespace quendar
