// SPDX-License-Identifier: MIT
#include "tessaro/applyservices.h"

#include <QtCore/QByteArray>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaro {

namespace {

/// How a service is started: out of reach of the terminal's signals, and without a hold on the pipe that the tool's
/// caller reads.
class Detachment {
public:
    Detachment() {
        posix_spawn_file_actions_init(&files);
        posix_spawnattr_init(&attributes);
        const bool isComplete = posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDWR, 0) == 0 &&
                                posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDOUT_FILENO) == 0 &&
                                posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID) == 0;
        error = isComplete ? 0 : ENOMEM;
    }
    ~Detachment() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
    }
    Detachment(const Detachment &) = delete;
    Detachment &operator=(const Detachment &) = delete;

    posix_spawn_file_actions_t files = {};
    posix_spawnattr_t attributes = {};
    int error = 0;
};

QByteArray serviceProgram() {
    const QByteArray named = qgetenv("TESSARO_APPLY_SERVICE");
    return named.isEmpty() ? QByteArray(TESSARO_APPLY_PROGRAM) : named;
}

} // namespace

ApplyServices::~ApplyServices() {
    forgetEnded();
}

Status ApplyServices::start(const QString &section, const QString &trigger) {
    forgetEnded();
    QByteArray program = serviceProgram();
    QByteArray sectionText = section.toUtf8();
    QByteArray triggerText = trigger.toUtf8();
    char *const arguments[] = {program.data(), sectionText.data(), triggerText.data(), nullptr};

    // not by fork, which copies the page tables of an import of a large document; asked first, since an emulated
    // process does not hear of a program that cannot be executed
    int error = access(program.constData(), X_OK) == 0 ? 0 : errno;
    pid_t service = -1;
    if (error == 0) {
        const Detachment detached;
        error = detached.error != 0 ? detached.error
                                    : posix_spawn(&service, program.constData(), &detached.files, &detached.attributes,
                                                  arguments, environ);
    }
    if (error != 0) {
        std::fprintf(stderr, "cannot start the apply service \"%s\": %s\n", program.constData(), std::strerror(error));
        return ApplyRefused;
    }
    running.push_back(service);
    return Success;
}

void ApplyServices::forgetEnded() {
    const auto hasEnded = [](pid_t service) { return waitpid(service, nullptr, WNOHANG) != 0; };
    running.erase(std::remove_if(running.begin(), running.end(), hasEnded), running.end());
}

} // namespace tessaro
