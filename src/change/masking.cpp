// SPDX-License-Identifier: MIT
#include "change/masking.h"

#include "planning/places.h"
#include "registry/viewkey.h"

namespace quendar {

namespace {

const QString mask = QStringLiteral("(secret)");
const QString maskOfChanged = QStringLiteral("(secret, changed)");
const QString maskOfEmptied = QStringLiteral("(secret, emptied)");

/// In the place of the text of a secret that has another one now.
QString maskAfter(const Change &change) {
    if (!change.before.isKey())
        return mask;
    return change.after.text.isEmpty() ? maskOfEmptied : maskOfChanged;
}

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
        hidden.after.text = maskAfter(change);
    return hidden;
}

Warning Masking::shown(const Warning &warning) const {
    const bool isName = warning.kind == Warning::PrinterNotCreated;
    Warning hidden = warning;
    hidden.value = shown(isName ? nameKeyOf(warning.path) : warning.path, warning.value);
    return hidden;
}

} // namespace quendar
