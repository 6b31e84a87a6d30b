// SPDX-License-Identifier: MIT
#include "stages/postaction.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QUuid>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quendar {

namespace {

constexpr char path[] = "/tmp/last-apply-command";

const QLatin1String restartKind("reboot");

/// Others may put something there again and again; a try takes microseconds.
constexpr int tries = 100;

/// Takes away whatever stands there, never following a link. What it is not allowed to, as another user's file in a
/// sticky folder, stays.
void clear() {
    if (::unlink(path) == 0 || errno == ENOENT || ::rmdir(path) == 0)
        return;
    // a folder with something in it
    const QByteArray elsewhere = path + ('.' + QUuid::createUuid().toByteArray(QUuid::Id128));
    ::rename(path, elsewhere.constData()); // NOLINT(cert-err33-c): the next try tells
}

/// Makes an empty file; false where something stands there.
bool make() {
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

} // namespace

void PostActionFile::replace() {
    isOwn = false;
    for (int i = 0; i < tries && !isOwn; ++i) {
        clear();
        isOwn = make();
    }
}

QString PostActionFile::read(const WarningSink &warn) const {
    QFile file;
    const int descriptor = ::open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0 && errno == ENOENT)
        return {};
    const bool isOpen =
        descriptor >= 0 && file.open(descriptor, QIODevice::ReadOnly | QIODevice::Text, QFileDevice::AutoCloseHandle);
    if (!isOpen || !isOwn || !isTrusted(descriptor)) {
        warn({Warning::PostActionIgnored, QString::fromLatin1(path), {}});
        return {};
    }
    return QString::fromUtf8(file.readLine().trimmed());
}

void PostActionFile::remove() const {
    QFile::remove(QString::fromLatin1(path));
}

QString postActionCommand(const QString &line, bool noReboot, bool hasDisplay) {
    const QString kind = line.section(QLatin1Char(':'), 0, 0);
    const QString command = line.section(QLatin1Char(':'), -1, -1);
    const bool isReboot = kind == restartKind;
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

bool isRestart(const QString &line, const QString &command) {
    return !command.isEmpty() && line.section(QLatin1Char(':'), 0, 0) == restartKind;
}

void startPostAction(const QString &command, Streams streams) {
    QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty())
        return;
    QProcess process;
    process.setProgram(words.takeFirst());
    process.setArguments(words);
    if (streams == Streams::None) {
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
    }
    process.startDetached();
}

} // namespace quendar
