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

/// Takes the lines of a file one after the other.
class Reader {
public:
    explicit Reader(const QStringList &parts) : knownParts(parts) {}

    /// What is wrong with the line; null when nothing is.
    const char *read(const QString &line) {
        if (line.startsWith(QLatin1Char('#')))
            return nullptr;
        if (line.startsWith(QLatin1String("== ")))
            return begin(line.mid(3));
        if (line.endsWith(QLatin1Char(':')) && !line.startsWith(QLatin1Char(' ')))
            return beginPart(line.chopped(1));
        if (line.isEmpty())
            lines = nullptr;
        else if (lines && line.startsWith(QLatin1String("  ")))
            lines->append(unescaped(line.mid(2)));
        else
            return "neither a story's name nor a part's, nor a line of a part";
        return nullptr;
    }

    QVector<Story> stories;

private:
    const char *begin(const QString &name) {
        lines = nullptr;
        for (const Story &story : std::as_const(stories))
            if (story.name == name)
                return "there is a story of this name";
        stories.append({name, {}});
        return nullptr;
    }

    const char *beginPart(const QString &part) {
        if (stories.isEmpty())
            return "a part before the first story";
        if (!knownParts.contains(part))
            return "an unknown part";
        if (stories.last().parts.contains(part))
            return "the story has this part already";
        lines = &stories.last().parts[part];
        return nullptr;
    }

    const QStringList knownParts;
    QStringList *lines = nullptr; // of the part that is read
};

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

void addStories(const QString &path, const char *parts) {
    Reader reader(QString::fromLatin1(parts).split(QLatin1Char(' ')) + QStringList(QStringLiteral("words")));
    int number = 0;
    for (const QString &line : QString::fromUtf8(contentsOf(path)).split(QLatin1Char('\n'))) {
        ++number;
        if (const char *const mistake = reader.read(line))
            qFatal("%s:%d: %s", qUtf8Printable(path), number, mistake);
    }
    QVector<Story> stories = reader.stories;
    const Story each = stories.value(0).name == QLatin1String("each") ? stories.takeFirst() : Story();
    if (stories.isEmpty())
        qFatal("%s:%d: no stories", qUtf8Printable(path), number);
    QTest::addColumn<Story>("story");
    for (Story &story : stories) {
        complete(story, each);
        QTest::newRow(qUtf8Printable(story.name)) << story;
    }
}
