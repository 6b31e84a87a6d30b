// SPDX-License-Identifier: MIT
#include "document/documentfile.h"

#include "report/error.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <sys/stat.h>

namespace quendar {

namespace {

/// Takes away from files made meanwhile what others could do with them.
class PrivateFileMode {
public:
    PrivateFileMode() : before(::umask(S_IRWXG | S_IRWXO)) {}
    ~PrivateFileMode() { ::umask(before); }
    PrivateFileMode(const PrivateFileMode &) = delete;
    PrivateFileMode &operator=(const PrivateFileMode &) = delete;

private:
    const mode_t before;
};

Error cannotOpen(const QString &path) {
    return Error(QStringLiteral("impossible to open file: %1").arg(path));
}

Error cannotWrite(const QString &path) {
    return Error(QStringLiteral("impossible to write file: %1").arg(path));
}

} // namespace

void openForExport(QFile &file) {
    const PrivateFileMode mode;
    if (!file.open(QIODevice::WriteOnly))
        throw cannotOpen(file.fileName());
}

void openForImport(QFile &file) {
    if (!QFileInfo(file.fileName()).isFile() || !file.open(QIODevice::ReadOnly))
        throw cannotOpen(file.fileName());
}

void writeDocument(QIODevice &device, const QByteArray &document) {
    auto *const file = qobject_cast<QFile *>(&device);
    const bool isWritten = device.write(document) == document.size() && (!file || file->flush());
    require(isWritten, cannotWrite(file ? file->fileName() : QString()));
}

void replaceDocument(const QString &path, const QByteArray &document) {
    const QFileInfo target(path);
    if (target.exists() && !target.isFile()) {
        QFile device(path);
        openForExport(device);
        writeDocument(device, document);
        return;
    }
    const PrivateFileMode mode;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw cannotOpen(path);
    require(file.write(document) == document.size() && file.commit(), cannotWrite(path));
}

} // namespace quendar
