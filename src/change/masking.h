// SPDX-License-Identifier: MIT
/// What is shown in the place of secrets.
#pragma once

#include "planning/changeset.h"
#include "planning/secrets.h"
#include "report/warning.h"

namespace quendar {

/// Replaces the texts of secret keys.
class Masking {
public:
    /// Replaces nothing where secrets are to be shown.
    Masking(const Secrets &secret, bool areSecretsShown) : secrets(secret), areShown(areSecretsShown) {}

    /// Whether the key at @p path holds a secret, shown or not.
    bool isSecret(const QString &path) const;

    /// Whether the text of the key at @p path is replaced.
    bool hides(const QString &path) const { return !areShown && isSecret(path); }

    /// @p text of the key at @p path, or what is shown instead.
    QString shown(const QString &path, const QString &text) const;

    /// @p change of the node at @p path, likewise; that a secret is emptied is told.
    Change shown(const QString &path, const Change &change) const;

    /// @p warning of what is not set: the text of a setting, or the name of a printer.
    Warning shown(const Warning &warning) const;

private:
    const Secrets secrets;
    const bool areShown;
};

} // namespace quendar
