// SPDX-License-Identifier: MIT
#include "tessaro/applyservices.h"

#include <QtCore/QByteArray>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tessaro {

namespace {

/// Throws an error of the system's, unless it is 0.
void check(int error) {
    if (error != 0)
        throw std::system_error(error, std::generic_category());
}

/// The reading end of a pipe that is hung up when this process ends, however it does: the writing end stays open until
/// then, and no other program gets it.
int lifeline() {
    static const int readingEnd = [] {
        int ends[2];
        check(pipe2(ends, O_CLOEXEC) == 0 ? 0 : errno);
        return ends[0];
    }();
    return readingEnd;
}

struct SpawnOptions {
    SpawnOptions() {
        posix_spawn_file_actions_init(&files);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnOptions() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
    }
    SpawnOptions(const SpawnOptions &) = delete;
    SpawnOptions &operator=(const SpawnOptions &) = delete;

    posix_spawn_file_actions_t files = {};
    posix_spawnattr_t attributes = {};
};

/// The folder that this library was loaded from.
QByteArray libraryFolder() {
    static const char ours = 0;
    Dl_info library = {};
    if (dladdr(&ours, &library) == 0)
        return {};
    const QByteArray file = library.dli_fname;
    return file.left(file.lastIndexOf('/') + 1);
}

/// The installed program goes by its place beside the library, since an installation can be under any prefix.
QByteArray serviceProgram() {
    const QByteArray named = qgetenv("TESSARO_APPLY_SERVICE");
    return named.isEmpty() ? libraryFolder() + TESSARO_APPLY_PROGRAM : named;
}

/// Starts a service that is out of reach of the terminal's signals and has no hold on the pipe that the tool's caller
/// reads. Its standard input is the lifeline.
pid_t spawn(QByteArray program, QByteArray section, QByteArray trigger) {
    SpawnOptions options;
    check(posix_spawn_file_actions_adddup2(&options.files, lifeline(), STDIN_FILENO));
    check(posix_spawn_file_actions_addopen(&options.files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
    check(posix_spawnattr_setflags(&options.attributes, POSIX_SPAWN_SETSID));

    // asked first, since an emulated process does not hear of a program that cannot be executed
    check(access(program.constData(), X_OK) == 0 ? 0 : errno);
    // not by fork, which copies the page tables of an import of a large document
    char *const arguments[] = {program.data(), section.data(), trigger.data(), nullptr};
    pid_t service = -1;
    check(posix_spawn(&service, arguments[0], &options.files, &options.attributes, arguments, environ));
    return service;
}

} // namespace

ApplyServices::~ApplyServices() {
    reapEnded();
}

Status ApplyServices::start(const QString &section, const QString &trigger) {
    reapEnded();
    const QByteArray program = serviceProgram();
    try {
        running.push_back(spawn(program, section.toUtf8(), trigger.toUtf8()));
        return Success;
    } catch (const std::system_error &error) {
        std::fprintf(stderr, "cannot start the apply service \"%s\": %s\n", program.constData(),
                     error.code().message().c_str());
        return ApplyRefused;
    }
}

void ApplyServices::reapEnded() {
    const auto hasEnded = [](pid_t service) { return waitpid(service, nullptr, WNOHANG) != 0; };
    running.erase(std::remove_if(running.begin(), running.end(), hasEnded), running.end());
}

} // namespace tessaro
