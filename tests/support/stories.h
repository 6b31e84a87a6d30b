#pragma once

#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QVector>

/// One case out of a file of stories:
///
///     == an empty document commits the view once
///     document:
///       <lumo_config/>
///     calls:
///       commit root/lumo-config-view
///
/// A part is its lines, the two blanks in front of each taken off. `\n`, `\t`, `\r` and `\s` (a blank) in a line
/// stand for what cannot be seen in a file.
struct Story {
    QString name;
    QMap<QString, QStringList> parts;

    QStringList lines(const char *part) const { return parts.value(QLatin1String(part)); }
    QString text(const char *part) const { return lines(part).join(QLatin1Char('\n')); }
};

Q_DECLARE_METATYPE(Story)

/// The stories of a file, which must hold some.
QVector<Story> storiesOf(const QString &path);
