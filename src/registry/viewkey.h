// SPDX-License-Identifier: MIT
/// Paths of the registry.
#pragma once

#include <QtCore/QLatin1String>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

namespace quendar {

/// A registry path, such as `root/lumo-config-view/display`. Plain text joined by "/": nothing is escaped, checked
/// or looked up. A null or empty text is a key like any other.
class ViewKey final : public QString {
public:
    ViewKey() = default;
    ViewKey(const QString &path) : QString(path) {}
    ViewKey(const QLatin1String &path) : QString(path) {}
    ViewKey(const char *path) : QString(QString::fromLatin1(path)) {}
    ViewKey(const ViewKey &) = default;
    ViewKey(ViewKey &&) = default;
    ViewKey &operator=(const ViewKey &) = default;
    ViewKey &operator=(ViewKey &&) = default;
    virtual ~ViewKey() = default;

    /// What follows the last "/", or all of it when there is none.
    QString name() const;

    /// What stands before the last "/", or the null key when there is none.
    ViewKey parent() const;

    /// The parts between the "/", without the empty ones.
    QStringList components() const;

    /// Whether @p path is this key or lies below it.
    bool covers(const QString &path) const;

    /// Takes @p base off the front where it covers this key; the "/" that followed it stays.
    ViewKey &makeRelativeTo(const QString &base);
};

/// What `ViewKey::name` returns, without a copy: good as long as the text of @p path.
QStringView nameIn(const QString &path);

/// The text of what `ViewKey::parent` returns, likewise.
QStringView parentIn(const QString &path);

/// The key of the entry called @p name in @p directory.
ViewKey childKey(const QString &directory, const QString &name);

} // namespace quendar

Q_DECLARE_TYPEINFO(quendar::ViewKey, Q_MOVABLE_TYPE); // nothing in it points into itself
