// SPDX-License-Identifier: MIT
#include "planning/secrets.h"

#include "report/error.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace quendar {

namespace {

QRegularExpression wholeName(const QString &pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern), QRegularExpression::CaseInsensitiveOption);
}

/// The lines of the file without comments and blanks at the ends.
QStringList linesOf(const QString &path) {
    QFile file(path);
    if (!file.exists())
        return {};
    require(QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly),
            Error(QStringLiteral("impossible to open file: ") + path));
    QStringList lines;
    while (!file.atEnd())
        lines.append(QString::fromUtf8(file.readLine()).section(QLatin1Char('#'), 0, 0).trimmed());
    require(file.error() == QFile::NoError, Error(QStringLiteral("impossible to read file: ") + path));
    return lines;
}

} // namespace

Secrets::Secrets(const QString &path)
    : patterns{wholeName(QStringLiteral("(.*_)?(passphrase|password|passwd|secret|psk|pin|private_key|token)"))} {
    for (const QString &name : linesOf(path))
        if (!name.isEmpty())
            patterns.append(
                wholeName(QRegularExpression::escape(name).replace(QLatin1String("\\*"), QLatin1String(".*"))));
}

Secrets Secrets::ofDevice() {
    return Secrets(qEnvironmentVariable("QUENDAR_CHANGE_SECRETS", QStringLiteral("/etc/quendar-change/secrets")));
}

bool Secrets::include(const QString &keyName) const {
    return std::any_of(
        patterns.cbegin(), patterns.cend(),
        [&](const QRegularExpression &pattern) { return pattern.match(keyName).hasMatch(); });
}

} // namespace quendar
