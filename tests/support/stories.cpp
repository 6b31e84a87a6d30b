#include "support/stories.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

QVector<Story> storiesOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no stories in %s", qUtf8Printable(path));

    QVector<Story> stories;
    QString part;
    for (QString line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("== "))) {
            stories.append({line.mid(3), {}});
        } else if (line.endsWith(QLatin1Char(':')) && !line.startsWith(QLatin1Char(' '))) {
            part = line.chopped(1);
            stories.last().parts.insert(part, {});
        } else if (line.startsWith(QLatin1String("  "))) {
            line.replace(QLatin1String("\\n"), QLatin1String("\n")).replace(QLatin1String("\\t"), QLatin1String("\t"));
            line.replace(QLatin1String("\\r"), QLatin1String("\r")).replace(QLatin1String("\\s"), QLatin1String(" "));
            stories.last().parts[part].append(line.mid(2));
        }
    }
    if (stories.isEmpty())
        qFatal("no stories in %s", qUtf8Printable(path));
    return stories;
}
