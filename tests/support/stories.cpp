// SPDX-License-Identifier: MIT
#include "support/stories.h"

#include "support/program.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

namespace {

/// The text of a part's line, with what cannot be seen in a file.
QString unescaped(QString line) {
    line.replace(QLatin1String("\\n"), QLatin1String("\n")).replace(QLatin1String("\\t"), QLatin1String("\t"));
    return line.replace(QLatin1String("\\r"), QLatin1String("\r")).replace(QLatin1String("\\s"), QLatin1String(" "));
}

QVector<Story> storiesIn(const QString &path, const QStringList &knownParts) {
    QVector<Story> stories;
    QString part; // that is read
    int number = 0;
    for (const QString &line : QString::fromUtf8(contentsOf(path)).split(QLatin1Char('\n'))) {
        ++number;
        const auto require = [&](bool holds, const char *otherwise) {
            if (!holds)
                qFatal("%s:%d: %s", qUtf8Printable(path), number, otherwise);
        };
        if (line.startsWith(QLatin1Char('#')))
            continue;
        if (line.startsWith(QLatin1String("== "))) {
            for (const Story &story : std::as_const(stories))
                require(story.name != line.mid(3), "there is a story of this name");
            stories.append({line.mid(3), {}});
            part.clear();
        } else if (line.endsWith(QLatin1Char(':')) && !line.startsWith(QLatin1Char(' '))) {
            part = line.chopped(1);
            require(!stories.isEmpty(), "a part before the first story");
            require(knownParts.contains(part), "an unknown part");
            require(!stories.last().parts.contains(part), "the story has this part already");
            stories.last().parts.insert(part, {});
        } else if (line.isEmpty()) {
            part.clear();
        } else {
            require(!part.isEmpty() && line.startsWith(QLatin1String("  ")),
                    "no name of a story or part, nor a part's line");
            stories.last().parts[part].append(unescaped(line.mid(2)));
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
        const QRegularExpression word(
            QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(line.section(QLatin1String(" = "), 0, 0))));
        for (QStringList &lines : story.parts)
            lines.replaceInStrings(word, line.section(QLatin1String(" = "), 1));
    }
}

} // namespace

void addStories(const QString &path, const char *parts) {
    const QStringList knownParts = QString::fromLatin1(parts).split(QLatin1Char(' '));
    QVector<Story> stories = storiesIn(path, knownParts + QStringList(QStringLiteral("words")));
    const Story each = stories.value(0).name == QLatin1String("each") ? stories.takeFirst() : Story();
    if (stories.isEmpty())
        qFatal("no stories in %s", qUtf8Printable(path));
    QTest::addColumn<Story>("story");
    for (Story &story : stories) {
        complete(story, each);
        QTest::newRow(qUtf8Printable(story.name)) << story;
    }
}
