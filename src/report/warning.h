// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QLatin1String>
#include <QtCore/QString>

#include <initializer_list>

/// One item of a warning: a literal stands as it is, a text in double quotes, a number in decimal.
class WarningItem {
public:
    WarningItem(QLatin1String literal) : shown(literal) {}
    WarningItem(const QString &text);
    WarningItem(int number) : shown(QString::number(number)) {}

    const QString &text() const { return shown; }

private:
    QString shown;
};

/// Hands one warning to Qt's message handler, each item followed by a blank. Composed here because QDebug escapes
/// what stands in a text and drops the last blank.
void warn(std::initializer_list<WarningItem> items);
