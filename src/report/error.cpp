// SPDX-License-Identifier: MIT
#include "report/error.h"

namespace quendar {

Error::Error(const QString &message) : text(message) {}

Error::~Error() = default;

QString Error::message() const {
    return text;
}

TessaroError::TessaroError(const QString &path, int status)
    : Error(QStringLiteral("error occured on view key: %1, status: %2").arg(path, QString::number(status))) {}

Error atLine(const Error &error, qint64 line) {
    return Error(error.message() + QStringLiteral(" at line ") + QString::number(line));
}

void require(bool succeeded, const Error &otherwise) {
    if (!succeeded)
        throw Error(otherwise);
}

} // namespace quendar
