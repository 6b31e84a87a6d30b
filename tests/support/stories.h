// SPDX-License-Identifier: MIT
/// Reads test cases out of text files, and makes each a row of a Qt Test function.
#pragma once

#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// One case out of a file of stories; their form is described in tests/README.md.
struct Story {
    QString name;
    QMap<QString, QStringList> parts;

    QStringList lines(const char *part) const { return parts.value(QLatin1String(part)); }
    QString text(const char *part) const { return lines(part).join(QLatin1Char('\n')); }
    /// As in a file, with a line feed after the last line; nothing when there is none.
    QByteArray file(const char *part) const { return lines(part).isEmpty() ? "" : text(part).toUtf8() + '\n'; }
};

Q_DECLARE_METATYPE(Story)

/// Makes each story of a file, which must hold some, a row with the column "story". A story has no other parts than
/// @p parts, separated by blanks. A mistake in the file ends the program, with the file's name and the line.
void addStories(const QString &path, const char *parts);
