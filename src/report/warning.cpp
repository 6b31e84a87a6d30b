// SPDX-License-Identifier: MIT
#include "report/warning.h"

#include <QtCore/QtGlobal>

WarningItem::WarningItem(const QString &text) : shown(QLatin1Char('"') + text + QLatin1Char('"')) {}

void warn(std::initializer_list<WarningItem> items) {
    QString line;
    for (const WarningItem &item : items)
        line += item.text() + QLatin1Char(' ');
    qt_message_output(QtWarningMsg, QMessageLogContext(nullptr, 0, nullptr, "default"), line);
}
