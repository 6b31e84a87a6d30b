// SPDX-License-Identifier: MIT
#include "stages/postaction.h"

#include "report/warning.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char path[] = "/tmp/last-apply-command";

/// Replaces the file by an empty one of this user, never following a link. False when what stands there cannot be
/// removed, as another user's file in a sticky directory.
bool replaceByEmptyFile() {
    ::unlink(path);
    const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (descriptor < 0)
        return false;
    const bool hasMode = ::fchmod(descriptor, 0644) == 0; // whatever the umask: the apply side may be another user
    ::close(descriptor);
    return hasMode;
}

bool isTrusted(int descriptor) {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_uid == 0 || status.st_uid == ::geteuid()) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// The first line of the file; empty when there is no file, nothing when there is one that is not to be trusted.
std::optional<QString> readLine(bool isFresh) {
    QFile file;
    const int descriptor = ::open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ENOENT ? std::optional<QString>(QString()) : std::nullopt;
    file.open(descriptor, QIODevice::ReadOnly | QIODevice::Text, QFileDevice::AutoCloseHandle);
    if (!isFresh || !isTrusted(descriptor))
        return std::nullopt;
    return QString::fromUtf8(file.readLine().trimmed());
}

void start(const QString &command) {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // its quoting rules are the ones that a post-action line is written to
    QProcess::startDetached(command);
    QT_WARNING_POP
}

} // namespace

PostAction::PostAction() : isFresh(replaceByEmptyFile()) {}

void PostAction::run(bool noReboot) const {
    const std::optional<QString> line = readLine(isFresh);
    if (!line) {
        warn({QLatin1String("post-action ignored, unsafe file:"), QString::fromLatin1(path)});
    } else {
        const QString command = postActionCommand(*line, noReboot, std::getenv("DISPLAY") != nullptr);
        if (!command.isEmpty())
            start(command);
    }
    QFile::remove(QString::fromLatin1(path));
}

QString postActionCommand(const QString &line, bool noReboot, bool hasDisplay) {
    const QString kind = line.section(QLatin1Char(':'), 0, 0);
    const QString command = line.section(QLatin1Char(':'), -1, -1);
    const bool isReboot = kind == QLatin1String("reboot");
    if (noReboot && isReboot)
        return {};
    if (hasDisplay)
        return command;
    if (isReboot)
        return kind;
    const bool needsDisplay = kind == QLatin1String("logout") || kind == QLatin1String("restart-display") ||
                              kind == QLatin1String("restart-desktop");
    return needsDisplay ? QString() : command;
}
