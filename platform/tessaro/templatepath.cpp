// SPDX-License-Identifier: MIT
#include "tessaro/templatepath.h"

#include <QtCore/QStringList>
#include <QtCore/QUuid>

namespace tessaro {

bool isUuid(const QString &name) {
    return !QUuid(name).isNull();
}

QString templatePath(const QString &path) {
    QStringList names = path.split(QLatin1Char('/'));
    if (names.first() == QLatin1String("root"))
        names.removeFirst();
    for (QString &name : names)
        if (isUuid(name))
            name = uuidPlaceholder;
    names.prepend(QStringLiteral("templates"));
    return names.join(QLatin1Char('/'));
}

} // namespace tessaro
