// SPDX-License-Identifier: MIT
#include "planning/secrets.h"

#include "report/error.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace quendar {

namespace {

const QString fileOfDevice = QStringLiteral("/etc/quendar-change/secrets");

/// What stands for the file of the device.
const char *const variable = "QUENDAR_CHANGE_SECRETS";

QRegularExpression wholeName(const QString &pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern), QRegularExpression::CaseInsensitiveOption);
}

/// A pattern in which "*" stands for anything.
QRegularExpression wildcard(const QString &name) {
    const QRegularExpression pattern =
        wholeName(QRegularExpression::escape(name).replace(QLatin1String("\\*"), QLatin1String(".*")));
    require(pattern.isValid(), Error(QStringLiteral("impossible to tell secrets by: ") + name.left(100)));
    return pattern;
}

bool isMissing(const QString &path) {
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) != 0 && errno == ENOENT;
}

/// The names in the file at @p path, without comments and blanks at the ends.
QStringList namesIn(const QString &path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), Error(QStringLiteral("impossible to open file: ") + path));
    QTextStream stream(&file);
    stream.setCodec("UTF-8"); // or what a byte order mark says
    const QString text = stream.readAll();
    require(file.error() == QFile::NoError, Error(QStringLiteral("impossible to read file: ") + path));
    QStringList names;
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("[\r\n]")));
    for (const QString &line : lines)
        names.append(line.section(QLatin1Char('#'), 0, 0).trimmed());
    names.removeAll(QString());
    return names;
}

} // namespace

Secrets::Secrets(const QStringList &furtherNames)
    : patterns{wholeName(QStringLiteral("(.*_)?(passphrase|password|passwd|secret|psk|pin|private_key|token)"))} {
    for (const QString &name : furtherNames)
        patterns.append(wildcard(name));
}

Secrets Secrets::ofDevice() {
    if (qEnvironmentVariableIsSet(variable))
        return Secrets(namesIn(qEnvironmentVariable(variable)));
    return Secrets(isMissing(fileOfDevice) ? QStringList() : namesIn(fileOfDevice));
}

bool Secrets::include(const QString &keyName) const {
    return std::any_of(
        patterns.cbegin(), patterns.cend(),
        [&](const QRegularExpression &pattern) { return pattern.match(keyName).hasMatch(); });
}

} // namespace quendar
