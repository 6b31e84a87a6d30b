// SPDX-License-Identifier: MIT
#include "trial/durablefile.h"

#include "report/error.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quendar {

namespace {

constexpr int format = 1;

QByteArray textOf(const QJsonObject &content) {
    return QJsonDocument(content).toJson(QJsonDocument::Compact);
}

QByteArray checksumOf(const QByteArray &text) {
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
}

/// What a file holds: an object around the content.
QByteArray fileTextOf(const QJsonObject &content) {
    const QByteArray text = textOf(content);
    return R"({"format":)" + QByteArray::number(format) + R"(,"sha256":")" + checksumOf(text) + R"(","content":)" +
           text + "}\n";
}

QString folderOf(const QString &path) {
    return QFileInfo(path).path();
}

void syncFolderOf(const QString &path) {
    const QString folder = folderOf(path);
    const Descriptor descriptor(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.isOpen() || ::fsync(descriptor.number()) != 0)
        throwSystemError("write", folder);
}

void writeAll(const Descriptor &file, const QByteArray &text, const QString &path) {
    for (ssize_t written = 0; written < text.size();) {
        const ssize_t size = ::write(file.number(), text.constData() + written, std::size_t(text.size() - written));
        if (size < 0 && errno != EINTR)
            throwSystemError("write", path);
        written += qMax<ssize_t>(size, 0);
    }
    if (::fsync(file.number()) != 0)
        throwSystemError("write", path);
}

Error unusable(const QString &path, const char *reason, const char *advice) {
    return Error(QStringLiteral("impossible to use %1: %2: %3")
                     .arg(path, QString::fromLatin1(reason), QString::fromLatin1(advice)));
}

} // namespace

void requireOwn(const Descriptor &file, const QString &path) {
    struct stat status = {};
    const bool isOwn = ::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode) &&
                       (status.st_uid == ::geteuid() || status.st_uid == 0) &&
                       (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    require(isOwn, unusable(path, "it belongs to somebody else, or others may write it",
                            "find out who has put it there, then remove it"));
}

void throwSystemError(const char *what, const QString &path) {
    throw Error(QStringLiteral("impossible to %1 %2: %3")
                    .arg(QString::fromLatin1(what), path, QString::fromLocal8Bit(std::strerror(errno))));
}

void writeDurably(const QString &path, const QJsonObject &content) {
    const QByteArray newPath = QFile::encodeName(path + QStringLiteral(".new"));
    // one that a kill has left is written over; the lock keeps others away
    const Descriptor descriptor(
        ::open(newPath.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!descriptor.isOpen())
        throwSystemError("write", path);
    try {
        writeAll(descriptor, fileTextOf(content), path);
        if (std::rename(newPath.constData(), QFile::encodeName(path).constData()) != 0)
            throwSystemError("write", path);
    } catch (const Error &) {
        ::unlink(newPath.constData());
        throw;
    }
    syncFolderOf(path);
}

std::optional<QJsonObject> readDurable(const QString &path) {
    const Descriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor.isOpen() && errno == ENOENT)
        return std::nullopt;
    if (!descriptor.isOpen() && errno != ELOOP)
        throwSystemError("read", path);
    requireOwn(descriptor, path);

    QFile file;
    require(file.open(descriptor.number(), QIODevice::ReadOnly), Error(QStringLiteral("impossible to read ") + path));
    const QJsonObject whole = QJsonDocument::fromJson(file.readAll()).object();
    require(whole.value(QLatin1String("format")).toInt() <= format,
            unusable(path, "a newer version of quendar-change has written it", "use that one"));
    const QJsonObject content = whole.value(QLatin1String("content")).toObject();
    require(whole.value(QLatin1String("sha256")).toString().toLatin1() == checksumOf(textOf(content)),
            unusable(path, "it is damaged", "see that the device has the settings it should have, then remove it"));
    return content;
}

void renameDurably(const QString &from, const QString &to) {
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0) {
        syncFolderOf(to);
        if (folderOf(from) != folderOf(to))
            syncFolderOf(from);
    } else if (errno != ENOENT) {
        throwSystemError("write", to);
    }
}

void makeFolderDurably(const QString &path) {
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0)
        syncFolderOf(path);
    else if (errno != EEXIST)
        throwSystemError("make", path);
}

void removeDurably(const QString &path) {
    if (::unlink(QFile::encodeName(path).constData()) == 0)
        syncFolderOf(path);
    else if (errno != ENOENT)
        throwSystemError("remove", path);
}

} // namespace quendar
