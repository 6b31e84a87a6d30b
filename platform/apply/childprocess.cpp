// SPDX-License-Identifier: MIT
#include "apply/childprocess.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace tessaro {

namespace {

[[noreturn]] void runInChild(const std::vector<char *> &arguments, int (*prepare)(), int errorPipe) {
    int error = prepare();
    if (error == 0) {
        execv(arguments.front(), arguments.data());
        error = errno;
    }
    while (write(errorPipe, &error, sizeof error) < 0 && errno == EINTR) {
    }
    _exit(127);
}

/// Waits until the child has either become the program, which closes the pipe, or failed to.
int readError(int errorPipe) {
    int error = 0;
    ssize_t size = 0;
    do {
        size = read(errorPipe, &error, sizeof error);
    } while (size < 0 && errno == EINTR);
    return size == sizeof error ? error : 0;
}

} // namespace

ChildProcess startProgram(const QVector<QByteArray> &command, int (*prepare)()) {
    std::vector<char *> arguments;
    for (const QByteArray &argument : command)
        arguments.push_back(const_cast<char *>(argument.constData())); // execv's signature; it changes nothing
    arguments.push_back(nullptr);

    int errorPipe[2];
    if (pipe2(errorPipe, O_CLOEXEC) != 0)
        return {-1, errno};
    const pid_t pid = fork();
    if (pid == 0)
        runInChild(arguments, prepare, errorPipe[1]);
    const int forkError = errno;
    close(errorPipe[1]);
    const int error = pid < 0 ? forkError : readError(errorPipe[0]);
    close(errorPipe[0]);
    return {pid, error};
}

bool discard(int descriptor) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0)
        return false;
    // when it came out as the very descriptor, only the flag is to go
    const bool done = nothing == descriptor ? fcntl(descriptor, F_SETFD, 0) == 0 : dup2(nothing, descriptor) >= 0;
    if (nothing != descriptor)
        close(nothing);
    return done;
}

} // namespace tessaro
