// SPDX-License-Identifier: MIT
/// Starting other programs.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <sys/types.h>

namespace tessaro {

struct ChildProcess {
    pid_t pid; ///< to be waited for by the caller; -1 when there is no process
    int error; ///< 0 when the program runs, otherwise the system's error that kept it from running
};

/// Runs the program @p command names first, with the rest as its arguments. @p prepare is called in the child before,
/// may call only what is safe between fork and exec, and returns 0 or the error that ends the attempt. Not by
/// posix_spawn, which does not report a failing exec under user-mode emulation.
ChildProcess startProgram(const QVector<QByteArray> &command, int (*prepare)());

/// Points @p descriptor at /dev/null. Safe between fork and exec; errno tells why it failed.
bool discard(int descriptor);

} // namespace tessaro
