// SPDX-License-Identifier: MIT
/// Which settings are secret.
#pragma once

#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace quendar {

/// Tells by its name whether a key holds a secret: `passphrase`, `password`, `passwd`, `secret`, `psk`, `pin`,
/// `private_key`, `token`, a name that ends in "_" and one of these, and what the administrator adds. Only keys hold
/// secrets, and case makes no difference.
class Secrets {
public:
    /// With what the file at @p path adds: one name a line, in which "*" stands for anything; "#" begins a comment. No
    /// file adds nothing. Throws Error for one that cannot be read.
    explicit Secrets(const QString &path);

    /// With the file of this device: /etc/quendar-change/secrets, or the one that QUENDAR_CHANGE_SECRETS names.
    static Secrets ofDevice();

    bool include(const QString &keyName) const;

private:
    QVector<QRegularExpression> patterns;
};

} // namespace quendar
