// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// One case out of a file of stories:
///
///     == each
///     words:
///       VIEW = root/lumo-config-view
///     == an empty document commits the view once
///     document:
///       <lumo_config/>
///     calls:
///       commit VIEW
///
/// A part is its lines, the two blanks in front of each taken off. `\n`, `\t`, `\r` and `\s` (a blank) in a line
/// stand for what cannot be seen in a file. A first story named "each" holds the parts of all that do not have a part
/// of that name themselves; `words` stand for others. NAME stands for the story's name.
struct Story {
    QString name;
    QMap<QString, QStringList> parts;

    QStringList lines(const char *part) const { return parts.value(QLatin1String(part)); }
    QString text(const char *part) const { return lines(part).join(QLatin1Char('\n')); }
    /// As in a file, with a line feed after the last line; nothing when there is none.
    QByteArray file(const char *part) const { return lines(part).isEmpty() ? "" : text(part).toUtf8() + '\n'; }
};

Q_DECLARE_METATYPE(Story)

/// Makes each story of a file, which must hold some, a row with the column "story".
void addStories(const QString &path);
