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

Descriptor tryToOpen(const QString &path, int flags) {
    return Descriptor(
        ::open(QFile::encodeName(path).constData(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

/// With @p flags; not open where there is none.
Descriptor openedIfThere(const QString &path, int flags) {
    Descriptor file = tryToOpen(path, flags);
    if (!file.isOpen() && errno == EROFS) // a change is put back even so
        file = tryToOpen(path, O_RDONLY);
    if (!file.isOpen() && errno != ENOENT)
        throwSystemError("open", path);
    if (file.isOpen())
        requireOwn(file, path);
    return file;
}

Descriptor opened(const QString &path) {
    Descriptor file = openedIfThere(path, O_RDWR); // one that is there takes no room
    if (!file.isOpen())
        file = openedIfThere(path, O_RDWR | O_CREAT);
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
    const Descriptor file = openedIfThere(path, O_RDONLY);
    return file.isOpen() && !hasLocked(file, LOCK_SH | LOCK_NB);
}

} // namespace quendar
