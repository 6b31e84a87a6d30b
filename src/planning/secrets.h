// SPDX-License-Identifier: MIT
/// Which settings are secret.
#pragma once

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace quendar {

/// Tells by its name whether a key holds a secret: `passphrase`, `password`, `passwd`, `secret`, `psk`, `pin`,
/// `private_key`, `token`, a name that ends in "_" and one of these, and what the administrator adds. Only keys hold
/// secrets, and case makes no difference.
class Secrets {
public:
    /// With @p furtherNames, in which "*" stands for anything. Throws Error for one that is no name.
    explicit Secrets(const QStringList &furtherNames);

    /// With those of this device: a name a line, "#" before comments, in /etc/quendar-change/secrets, if there is such
    /// a file, or in the one that QUENDAR_CHANGE_SECRETS names. Throws Error for a file that cannot be read.
    static Secrets ofDevice();

    bool include(const QString &keyName) const;

private:
    QVector<QRegularExpression> patterns;
};

} // namespace quendar
