// SPDX-License-Identifier: MIT
#include "change/detachment.h"

#include "change/exitstatus.h"
#include "trial/durablefile.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quendar {

namespace {

/// The caller's process: waits until it may go, or the other one has ended.
[[noreturn]] void waitFor(pid_t process, int released) {
    char byte = 0;
    ssize_t size = 0;
    do {
        size = ::read(released, &byte, 1);
    } while (size < 0 && errno == EINTR);
    if (size == 1)
        ::_exit(exitstatus::done);
    int status = -1; // also where nobody is told of it
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    ::_exit(WIFEXITED(status) ? WEXITSTATUS(status) : exitstatus::failed);
}

} // namespace

Detachment::Detachment() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throwSystemError("make", QStringLiteral("a pipe"));
    Descriptor released(ends[0]);
    caller = Descriptor(ends[1]);
    const pid_t process = ::fork();
    if (process < 0)
        throwSystemError("make", QStringLiteral("a process"));
    if (process > 0) {
        caller.close();
        waitFor(process, released.number());
    }
    ::setsid();
}

void Detachment::letCallerGo() {
    const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nothing.number(), stream);
    const char released = 1;
    // where the caller's process was killed, nobody waits
    [[maybe_unused]] const ssize_t size = ::write(caller.number(), &released, 1);
    caller.close();
}

} // namespace quendar
