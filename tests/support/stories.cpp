// SPDX-License-Identifier: MIT
#include "support/stories.h"

#include "support/program.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

namespace {

QVector<Story> storiesIn(const QString &text) {
    QVector<Story> stories;
    QString part;
    for (QString line : text.split(QLatin1Char('\n'))) {
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
    return stories;
}

void complete(Story &story, const Story &each) {
    for (auto part = each.parts.cbegin(); part != each.parts.cend(); ++part)
        if (!story.parts.contains(part.key()))
            story.parts.insert(part.key(), *part);
    const QStringList words = story.parts.take(QStringLiteral("words"));
    for (const QString &line : words + QStringList(QStringLiteral("NAME = ") + story.name)) {
        const QRegularExpression word(QStringLiteral("\\b%1\\b").arg(line.section(QLatin1String(" = "), 0, 0)));
        for (QStringList &lines : story.parts)
            lines.replaceInStrings(word, line.section(QLatin1String(" = "), 1));
    }
}

} // namespace

void addStories(const QString &path) {
    QVector<Story> stories = storiesIn(QString::fromUtf8(contentsOf(path)));
    const Story each = stories.value(0).name == QLatin1String("each") ? stories.takeFirst() : Story();
    if (stories.isEmpty())
        qFatal("no stories in %s", qUtf8Printable(path));
    QTest::addColumn<Story>("story");
    for (Story &story : stories) {
        complete(story, each);
        QTest::newRow(qUtf8Printable(story.name)) << story;
    }
}
