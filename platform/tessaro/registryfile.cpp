// SPDX-License-Identifier: MIT
#include "tessaro/registryfile.h"

#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

#include <unistd.h>

namespace tessaro {

std::string registryFile() {
    const QByteArray named = qgetenv("TESSARO_REGISTRY");
    if (!named.isEmpty())
        return named.toStdString();
    if (geteuid() == 0)
        return "/var/lib/tessaro/registry.db";
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QFile::encodeName(data + QLatin1String("/tessaro/registry.db")).toStdString();
}

} // namespace tessaro
