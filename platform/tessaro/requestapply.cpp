#include "requestapply.h"

#include "childprocess.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray serviceProgram() {
    const QByteArray named = qgetenv("TESSARO_APPLY_SERVICE");
    return named.isEmpty() ? QByteArray(TESSARO_APPLY_PROGRAM) : named;
}

/// Makes the child an orphan, which the system's first process cares for, out of reach of the terminal's signals and
/// without a hold on the pipe that the tool's caller reads.
int detach() {
    setsid();
    const pid_t service = fork();
    if (service > 0) {
        _exit(0);
    }
    return service == 0 && discard(STDIN_FILENO) && discard(STDOUT_FILENO) ? 0 : errno;
}

} // namespace

Status startApplyService(const QString &section, const QString &trigger) {
    const QByteArray program = serviceProgram();
    const ChildProcess launcher = startProgram({program, section.toUtf8(), trigger.toUtf8()}, detach);
    if (launcher.pid > 0) {
        waitpid(launcher.pid, nullptr, 0);
    }
    if (launcher.error != 0) {
        std::fprintf(stderr, "cannot start the apply service \"%s\": %s\n", program.constData(),
                     std::strerror(launcher.error));
        return ApplyRefused;
    }
    return Success;
}
