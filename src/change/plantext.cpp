// SPDX-License-Identifier: MIT
#include "change/plantext.h"

#include "change/readable.h"
#include "planning/places.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"

#include <QtCore/QSet>

#include <algorithm>

namespace quendar {

namespace {

/// Labels are filled up to the longest of their section, but not beyond this.
constexpr int maximumColumn = 46;

/// One change of a section.
struct Line {
    char mark;
    QString label;
    QString detail;
};

using Sections = QMap<QString, QVector<Line>>;

/// Terminal sequences, or nothing.
class Colours {
public:
    explicit Colours(bool areUsed) : used(areUsed) {}

    QString bold(const QString &text) const { return painted(text, "1"); }
    QString marked(char mark, const QString &text) const {
        return painted(text, mark == '+' ? "32" : mark == '-' ? "31" : mark == '~' ? "33" : "35");
    }

private:
    QString painted(const QString &text, const char *code) const {
        return used ? QStringLiteral("\x1b[%1m%2\x1b[0m").arg(QLatin1String(code), text) : text;
    }

    const bool used;
};

/// Makes the lines of a plan.
class PlanLines {
public:
    PlanLines(const ImportPlan &source, const Masking &mask) : plan(source), masking(mask) {
        for (const EntryChange &entry : plan.entries)
            wholeEntries.insert(entry.path);
    }

    Sections bySection() const {
        Sections sections;
        for (const EntryChange &entry : plan.entries)
            sections[sectionOf(entry.path)].append(entryLine(entry));
        for (auto change = plan.changes.byPath().cbegin(); change != plan.changes.byPath().cend(); ++change)
            if (!wholeEntries.contains(entryOf(change.key())))
                sections[sectionOf(change.key())].append(changeLine(change.key(), *change));
        for (const Warning &setting : plan.unknown)
            sections[sectionOf(setting.path)].append(
                {'?', labelOf(setting.path),
                 shownText(setting.path, setting.value) + QStringLiteral(", not known here")});
        return sections;
    }

private:
    Line entryLine(const EntryChange &entry) const {
        const QString id = nameIn(entry.path).toString();
        return {entry.isMade ? '+' : '-', entryLabel(entry.path, entry.name),
                entry.isIdMadeUp ? QStringLiteral("an id that the import makes up") : readable(id)};
    }

    Line changeLine(const QString &path, const Change &change) const {
        const Change shown = masking.shown(path, change);
        if (change.before.isAbsent())
            return {'+', labelOf(path), shownNode(path, shown.after)};
        if (change.after.isAbsent())
            return {'-', labelOf(path), shownNode(path, shown.before)};
        const bool areTexts = change.before.isKey() && change.after.isKey() && !masking.hides(path);
        return {'~', labelOf(path),
                areTexts ? quotedChange(change.before.text, change.after.text)
                         : shownNode(path, shown.before) + QStringLiteral(" → ") + shownNode(path, shown.after)};
    }

    QString shownNode(const QString &path, const Node &shown) const {
        if (shown.isKey())
            return masking.hides(path) ? shown.text : quoted(shown.text);
        return shown.isDirectory() ? QStringLiteral("(directory)") : QString();
    }

    QString shownText(const QString &path, const QString &text) const {
        return masking.hides(path) ? masking.shown(path, text) : quoted(text);
    }

    /// What a path is called below its section.
    QString labelOf(const QString &path) const {
        const QString entry = entryOf(path);
        if (!entry.isEmpty()) {
            const QString within = path.mid(entry.size() + 1);
            return entryLabel(entry, plan.entryNames.value(entry)) +
                   (within.isEmpty() ? within : QLatin1Char(' ') + readable(within));
        }
        const QString below = path.section(QLatin1Char('/'), 3);
        return below.isEmpty() ? QStringLiteral("(itself)") : readable(below);
    }

    /// A session or printer by its name, or else by its id, unless that is another each time.
    QString entryLabel(const QString &entry, const QString &name) const {
        const QString id =
            plan.madeUpEntries.contains(entry) ? QStringLiteral("without a name") : readable(nameIn(entry).toString());
        return kindOf(entry) + QLatin1Char(' ') + (name.isEmpty() ? id : shownText(nameKeyOf(entry), name));
    }

    const ImportPlan &plan;
    const Masking &masking;
    QSet<QString> wholeEntries; // made or dropped
};

/// How many lines bear each mark.
QString marksOf(const QVector<Line> &lines) {
    QStringList counts;
    for (const char mark : {'-', '+', '~', '?'}) {
        const auto number =
            std::count_if(lines.cbegin(), lines.cend(), [mark](const Line &line) { return line.mark == mark; });
        if (number > 0)
            counts.append(QStringLiteral("%1 %2").arg(QLatin1Char(mark)).arg(number));
    }
    return counts.join(QStringLiteral(", "));
}

QString sectionText(const QString &name, const QVector<Line> &lines, const Colours &colours) {
    const int shown = qMin(lines.size(), maximumLines);
    int column = 0;
    for (const Line &line : lines.mid(0, shown))
        column = qMax(column, qMin(line.label.size(), maximumColumn));

    QString text = colours.bold(readable(name.isEmpty() ? viewRoot() : name)) + QLatin1Char('\n');
    for (const Line &line : lines.mid(0, shown)) {
        const QString written = QStringLiteral("  %1 ").arg(QLatin1Char(line.mark)) + line.label.leftJustified(column);
        text += colours.marked(line.mark, written) + QStringLiteral("  ") + line.detail + QLatin1Char('\n');
    }
    if (lines.size() > shown)
        text += QStringLiteral("  … and more: ") + marksOf(lines.mid(shown)) + QLatin1Char('\n');
    return text + QLatin1Char('\n');
}

QString totals(const ImportPlan &plan) {
    const QString counts = countsText(countsOf(plan));
    return counts.isEmpty() ? counts : QStringLiteral("Settings: ") + counts + QLatin1Char('\n');
}

} // namespace

QString countsText(const SettingCounts &counts) {
    QStringList texts;
    const auto add = [&texts](int number, const QString &what) {
        if (number > 0)
            texts.append(QString::number(number) + what);
    };
    add(counts.changed, QStringLiteral(" changed"));
    add(counts.made, QStringLiteral(" made"));
    add(counts.deleted, QStringLiteral(" deleted"));
    add(counts.unknown, QStringLiteral(" not known here"));
    return texts.join(QStringLiteral(", "));
}

QByteArray planText(const ImportPlan &plan, const Masking &masking, const QString &open, bool isColoured) {
    const Colours colours(isColoured);
    QString text;
    const Sections sections = PlanLines(plan, masking).bySection();
    for (auto section = sections.cbegin(); section != sections.cend(); ++section)
        text += sectionText(section.key(), *section, colours);
    for (const Warning &warning : plan.warnings)
        text += readable(lineOf(masking.shown(warning)).trimmed()) + QLatin1Char('\n');
    text += totals(plan);
    if (!plan.sections.isEmpty())
        text += QStringLiteral("Will be applied, in this order: ") + plan.sections.join(QStringLiteral(", ")) +
                QLatin1Char('\n');
    if (!open.isEmpty())
        text += QStringLiteral("The change %1 is open, and may still be put back\n").arg(open);
    else if (plan.isEmpty())
        text += QStringLiteral("Nothing to do\n");
    if (text.endsWith(QLatin1String("\n\n")))
        text.chop(1); // nothing follows the sections
    return text.toUtf8();
}

} // namespace quendar
