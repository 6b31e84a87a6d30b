// SPDX-License-Identifier: MIT
#include "commands/settingsfile.h"

#include "report/error.h"

#include <QtCore/QFileInfo>

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

Error cannotOpen(const QFile &file) {
    return Error(QStringLiteral("impossible to open file: %1").arg(file.fileName()));
}

} // namespace

void openForExport(QFile &file) {
    const PrivateFileMode mode;
    if (!file.open(QIODevice::WriteOnly))
        throw cannotOpen(file);
}

void openForImport(QFile &file) {
    if (!QFileInfo(file.fileName()).isFile() || !file.open(QIODevice::ReadOnly))
        throw cannotOpen(file);
}

void writeDocument(QIODevice &device, const QByteArray &document) {
    auto *const file = qobject_cast<QFile *>(&device);
    const bool isWritten = device.write(document) == document.size() && (!file || file->flush());
    if (!isWritten)
        throw Error(QStringLiteral("impossible to write file: %1").arg(file ? file->fileName() : QString()));
}

void requireSupportedCategory(const QString &category) {
    if (category != QLatin1String("all"))
        throw Error(QStringLiteral("unsupported setting category: %1").arg(category));
}

} // namespace quendar
