// SPDX-License-Identifier: MIT
#include "change/masking.h"

#include "registry/viewkey.h"

namespace quendar {

namespace {

const QString mask = QStringLiteral("(secret)");
const QString maskOfChanged = QStringLiteral("(secret, changed)");

} // namespace

bool Masking::isSecret(const QString &path) const {
    return secrets.include(nameIn(path).toString());
}

QString Masking::shown(const QString &path, const QString &text) const {
    return hides(path) ? mask : text;
}

Change Masking::shown(const QString &path, const Change &change) const {
    if (!hides(path))
        return change;
    Change hidden = change;
    if (change.before.isKey())
        hidden.before.text = mask;
    if (change.after.isKey())
        hidden.after.text = change.before.isKey() ? maskOfChanged : mask;
    return hidden;
}

} // namespace quendar
