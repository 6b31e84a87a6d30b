// SPDX-License-Identifier: MIT
#include "registry/viewkey.h"

#include <QtCore/QStringBuilder>

namespace quendar {

namespace {
constexpr QLatin1Char separator('/');
}

QString ViewKey::name() const {
    return nameIn(*this).toString();
}

ViewKey ViewKey::parent() const {
    const int end = lastIndexOf(separator);
    return end < 0 ? ViewKey() : ViewKey(left(end));
}

QStringList ViewKey::components() const {
    return split(separator, Qt::SkipEmptyParts);
}

bool ViewKey::covers(const QString &path) const {
    return path == *this || path.startsWith(*this + separator);
}

ViewKey &ViewKey::makeRelativeTo(const QString &base) {
    if (ViewKey(base).covers(*this))
        remove(0, base.size());
    return *this;
}

QStringView nameIn(const QString &path) {
    return QStringView(path).mid(path.lastIndexOf(separator) + 1);
}

QStringView parentIn(const QString &path) {
    return QStringView(path).left(qMax(path.lastIndexOf(separator), 0));
}

ViewKey childKey(const QString &directory, const QString &name) {
    return QString(directory % separator % name);
}

} // namespace quendar
