// SPDX-License-Identifier: MIT
#include "apply/hookprocess.h"

#include "apply/childprocess.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaro {

namespace {

using Clock = std::chrono::steady_clock;

sigset_t childEnds() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    return signals;
}

int prepareHook() {
    const sigset_t signals = childEnds();
    const bool done = sigprocmask(SIG_UNBLOCK, &signals, nullptr) == 0 && setpgid(0, 0) == 0 && discard(STDIN_FILENO) &&
                      dup2(STDERR_FILENO, STDOUT_FILENO) >= 0;
    return done ? 0 : errno;
}

timespec toTimespec(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
}

/// The wait status of @p pid, nothing when it is still running at @p deadline. SIGCHLD is blocked, so that its end
/// is noticed also between the two calls.
std::optional<int> waitUntil(Clock::time_point deadline, pid_t pid) {
    const sigset_t signals = childEnds();
    int status = 0;
    while (waitpid(pid, &status, WNOHANG) == 0) {
        const auto left = deadline - Clock::now();
        if (left <= Clock::duration::zero())
            return std::nullopt;
        const timespec timeout = toTimespec(left);
        sigtimedwait(&signals, nullptr, &timeout);
    }
    return status;
}

QString describe(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? QStringLiteral("signal %1").arg(WTERMSIG(waitStatus))
                                   : QString::number(WEXITSTATUS(waitStatus));
}

} // namespace

QString runHook(const QByteArray &hook, const QString &section, const QString &trigger, std::chrono::seconds limit) {
    std::signal(SIGCHLD, SIG_DFL); // where it was ignored, there would be no status
    const sigset_t signals = childEnds();
    sigprocmask(SIG_BLOCK, &signals, nullptr);

    const auto deadline = Clock::now() + limit;
    const ChildProcess child = startProgram({hook, section.toUtf8(), trigger.toUtf8()}, prepareHook);
    if (child.error != 0)
        return QStringLiteral("cannot be executed: ") + QString::fromLocal8Bit(std::strerror(child.error));
    const std::optional<int> status = waitUntil(deadline, child.pid);
    if (!status) {
        kill(-child.pid, SIGKILL);
        waitpid(child.pid, nullptr, 0);
        return QStringLiteral("timeout");
    }
    return describe(*status);
}

} // namespace tessaro
