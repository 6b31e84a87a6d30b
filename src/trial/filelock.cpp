// SPDX-License-Identifier: MIT
#include "trial/filelock.h"

#include "trial/durablefile.h"

#include <QtCore/QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace quendar {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pause(10);

Descriptor opened(const QString &path) {
    Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        throwSystemError("open", path);
    return file;
}

bool hasLocked(const Descriptor &file, int operation) {
    int result = 0;
    do {
        result = ::flock(file.number(), operation);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace

FileLock FileLock::waitedFor(const QString &path) {
    Descriptor file = opened(path);
    if (!hasLocked(file, LOCK_EX))
        throwSystemError("lock", path);
    return FileLock(std::move(file));
}

std::optional<FileLock> FileLock::tried(const QString &path, std::chrono::milliseconds limit) {
    const Clock::time_point end = Clock::now() + limit;
    Descriptor file = opened(path);
    while (!hasLocked(file, LOCK_EX | LOCK_NB)) {
        if (errno != EWOULDBLOCK)
            throwSystemError("lock", path);
        if (Clock::now() >= end)
            return std::nullopt;
        std::this_thread::sleep_for(pause);
    }
    return FileLock(std::move(file));
}

bool FileLock::isHeld(const QString &path) {
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    return file.isOpen() && !hasLocked(file, LOCK_SH | LOCK_NB);
}

} // namespace quendar
