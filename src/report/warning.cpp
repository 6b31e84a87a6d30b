// SPDX-License-Identifier: MIT
#include "report/warning.h"

#include <QtCore/QtGlobal>

namespace quendar {

namespace {

QString literal(const char *text) {
    return QLatin1String(text) + QLatin1Char(' ');
}

QString quoted(const QString &text) {
    return QLatin1Char('"') + text + QLatin1String("\" ");
}

QString failed(const char *what, const Warning &warning) {
    return literal(what) + quoted(warning.path) + QString::number(warning.status) + QLatin1Char(' ');
}

} // namespace

QString lineOf(const Warning &warning) {
    switch (warning.kind) {
    case Warning::NotSet:
        return literal("Impossible to set:") + quoted(warning.path) + literal(", with:") + quoted(warning.value);
    case Warning::SessionNotCreated:
        return failed("an error occured while creating:", warning);
    case Warning::SessionNotDeleted:
        return failed("an error occured while deleting session:", warning);
    case Warning::PrinterNotCreated:
        return literal("an error occured while creating printer") + quoted(warning.path) + quoted(warning.value);
    case Warning::PrinterNotDeleted:
        return failed("an error occured while deleting printer:", warning);
    case Warning::PostActionIgnored:
        return literal("post-action ignored, unsafe file:") + quoted(warning.path);
    }
    return {};
}

void printWarning(const Warning &warning) {
    // QDebug would escape what stands in a text, and drop the last blank
    qt_message_output(QtWarningMsg, QMessageLogContext(nullptr, 0, nullptr, "default"), lineOf(warning));
}

} // namespace quendar
