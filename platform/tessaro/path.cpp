// SPDX-License-Identifier: MIT
#include "tessaro/path.h"

namespace tessaro {

namespace {
const QLatin1Char separator('/');
}

bool isPath(const QString &text) {
    QChar before = separator;
    for (const QChar character : text) {
        if (character == separator && before == separator)
            return false;
        before = character;
    }
    return before != separator && text.isValidUtf16();
}

QString parentOf(const QString &path) {
    return path.left(qMax(path.lastIndexOf(separator), 0));
}

bool isIn(const QString &path, const QString &directory) {
    return path.lastIndexOf(separator) == directory.size() && path.startsWith(directory);
}

bool areInOneDirectory(const QString &path, const QString &other) {
    const int end = path.lastIndexOf(separator);
    return end == other.lastIndexOf(separator) && (end < 0 || path.leftRef(end) == other.leftRef(end));
}

QString nameOf(const QString &path) {
    return path.mid(path.lastIndexOf(separator) + 1);
}

QString childOf(const QString &directory, const QString &name) {
    return directory.isEmpty() ? name : directory + separator + name;
}

} // namespace tessaro
