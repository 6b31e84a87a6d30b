// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "sweeps/comparison.h"
#include "sweeps/madeupdocument.h"
#include "sweeps/madeupregistry.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>
#include <QtCore/QUuid>
#include <QtTest/QtTest>

namespace {

const QLatin1Char slash('/');
const QString other = QStringLiteral("other.json");
const QByteArray import = "quendarsettings -settings f -set all";

/// A device over the library that the programs were built with, or over one of another make.
class SweptDevice {
public:
    explicit SweptDevice(bool hasOther) : hasOtherLibrary(hasOther) {
        device.environment.insert("LC_ALL", "C.UTF-8");
        const QString hook = device.write(QStringLiteral("hooks/default"),
                                          "#!/bin/sh\necho \"${1##*/}\" >>\"$TMPDIR/../other.json.applied\"\n");
        QFile::setPermissions(hook, QFile::ReadOwner | QFile::ExeOwner);
        if (hasOther) {
            device.environment.insert("OTHER_REGISTRY", QFile::encodeName(device.path(other)));
            device.environment.insert("LD_LIBRARY_PATH", OTHER_LIBRARIES);
        }
    }

    void load(const QByteArray &json) const {
        if (hasOtherLibrary)
            putBack(json);
        else
            device.load(json);
    }

    QByteArray file() const { return device.read(fileName()); }
    void putBack(const QByteArray &bytes) const { device.write(fileName(), bytes); }

    Nodes nodes() const { return nodesOf(hasOtherLibrary ? file() : device.dump()); }

    /// The names of the sections that were applied since it was last asked.
    QStringList applied() const {
        const QString log = other + QStringLiteral(".applied");
        QStringList names = QString::fromUtf8(device.read(log)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QFile::remove(device.path(log));
        return names.replaceInStrings(QRegularExpression(QStringLiteral("^.*/")), QString());
    }

    Device device;

private:
    QString fileName() const { return hasOtherLibrary ? other : QStringLiteral("registry.db"); }

    const bool hasOtherLibrary;
};

QStringList linesOf(const QByteArray &text) {
    return QString::fromUtf8(text).split(QLatin1Char('\n'));
}

/// The registry as a plan foretells it.
Nodes foretold(Nodes nodes, const QJsonObject &plan, Comparison &comparison) {
    for (const auto &item : plan.value(QLatin1String("changes")).toArray()) {
        const QJsonObject change = item.toObject();
        const QString path = slash + word(change, "path");
        const QJsonValue after = change.value(QLatin1String("after"));
        const QJsonValue before = change.value(QLatin1String("before"));
        comparison.demand(nodes.value(path, QJsonValue::Null) == before && before != after,
                          QStringLiteral("no such change: ") + path);
        nodes.remove(path);
        if (!after.isNull())
            nodes.insert(path, after);
    }
    return nodes;
}

QStringList entryLines(const QJsonObject &plan) {
    QStringList lines;
    for (const auto &item : plan.value(QLatin1String("entries")).toArray()) {
        const QJsonObject entry = item.toObject();
        lines.append(QStringList{word(entry, "kind"), word(entry, "change"), slash + word(entry, "path"),
                                 word(entry, "name"), word(entry, "id_made_up")}
                         .join(QLatin1Char('|')));
    }
    return lines;
}

/// Those that @p nodes has and @p others has not.
QStringList entryLines(const Nodes &nodes, const Nodes &others, const char *change, const Comparison &comparison) {
    // not in one another
    static const QRegularExpression entry(
        QStringLiteral("^/root/[^/]+/((?!(?:session|printer)s/)[^/]+/)*(session|printer)s/[^/]+$"));
    QStringList lines;
    for (auto node = nodes.cbegin(); node != nodes.cend(); ++node) {
        const auto match = entry.match(node.key());
        if (match.hasMatch() && !node->isString() && others.value(node.key(), QJsonValue::Null).isNull())
            lines.append(QStringList{match.captured(2), QLatin1String(change), node.key(),
                                     nodes.value(node.key() + QStringLiteral("/name")).toString(),
                                     comparison.isMadeUp(node.key()) ? QStringLiteral("true") : QStringLiteral("false")}
                             .join(QLatin1Char('|')));
    }
    return lines;
}

/// What an import prints of what a plan lists.
QByteArray warnings(const QJsonObject &plan) {
    QStringList lines = texts(plan.value(QLatin1String("warnings")));
    for (const auto &item : plan.value(QLatin1String("unknown")).toArray())
        lines.append(QStringLiteral("Impossible to set: \"%1\" , with: \"%2\" ")
                         .arg(word(item.toObject(), "path"), word(item.toObject(), "text")));
    return lines.join(QLatin1Char('\n')).toUtf8() + (lines.isEmpty() ? "" : "\n");
}

/// Looks whether @p outcome is an error and the import ends in the same one. True where it is one.
bool isError(const Outcome &outcome, const Outcome &imported, bool lacksDefaults, Comparison &comparison) {
    if (outcome.status != 1)
        return false;
    const QString error = word(parsed(outcome.out), "error");
    // a library could also fill new entries when they are committed, and nobody can foresee that
    const bool isRefused = error.startsWith(QLatin1String("impossible to plan: the registry fills a new entry "));
    if (!isRefused || !lacksDefaults)
        comparison.compare("error", linesOf("error: " + error.toUtf8() + '\n'),
                           linesOf(imported.err.mid(imported.err.lastIndexOf("error: "))));
    return true;
}

/// Where the plan for the file f differs from its import. Counts the plan by its exit status.
QStringList planComplaints(const SweptDevice &swept, bool lacksDefaults, QMap<int, int> &counts) {
    const Device &device = swept.device;
    const QByteArray registry = swept.file();
    const Nodes before = swept.nodes();
    Comparison comparison(linesOf(before).join(QLatin1Char('\n')).toUtf8() + device.read(QStringLiteral("home/f")));

    const Outcome planned = device.run("quendar-change plan f --json --show-secrets --with-document after");
    const QJsonObject plan = parsed(planned.out);
    ++counts[planned.status];
    comparison.demand(swept.file() == registry, QStringLiteral("the registry's file is not the same to the byte"));
    comparison.compareOrdered("left", {}, device.leftovers());
    comparison.compareOrdered("applied", {}, swept.applied());

    const Outcome imported = device.run(import);
    const QStringList applied = swept.applied();
    if (isError(planned, imported, lacksDefaults, comparison))
        return comparison.wrong;
    const Nodes after = swept.nodes();
    const auto holds = [&plan](const char *list) { return !plan.value(QLatin1String(list)).toArray().isEmpty(); };
    const bool isSomething = holds("changes") || holds("sections") || holds("unknown");
    comparison.compareOrdered("status", {QString::number(isSomething ? 2 : 0)}, {QString::number(planned.status)});
    comparison.compare("registry", linesOf(foretold(before, plan, comparison)), linesOf(after));
    comparison.compare("entries", entryLines(plan),
                       entryLines(after, before, "made", comparison) +
                           entryLines(before, after, "dropped", comparison));
    comparison.compare("printed", linesOf(warnings(plan)), linesOf(imported.err));
    comparison.compareOrdered("applied", texts(plan.value(QLatin1String("sections"))), applied);
    device.run("quendarsettings -settings exported -get all");
    comparison.compare("document", linesOf(device.read(QStringLiteral("home/after"))),
                       linesOf(device.read(QStringLiteral("home/exported"))));
    return comparison.wrong;
}

/// Where a key comes back of a session whose id is not in braces and lower case, or of a printer whose name is altered
/// as well; null for all others, and for a session that has no id at all: it gets a new one.
QString otherPlaceOf(const QString &path) {
    static const QRegularExpression entry(
        QStringLiteral("(?<=/sessions/)[^/]+|(?<=/printers/)[^/]+(?=/(name|driver)$)"));
    const auto match = entry.match(path);
    const QUuid id(match.captured());
    const QString back = QString(path).replace(match.capturedStart(), match.capturedLength(), id.toString());
    return id.isNull() || back == path ? QString() : back;
}

/// Where what is said of the device's own export, the file f, differs from what its import does to the device.
QStringList verificationComplaints(const SweptDevice &swept, bool lacksDefaults) {
    const QByteArray registry = swept.file();
    const Nodes before = swept.nodes();
    const Outcome verified = swept.device.run("quendar-change verify f --json");
    Comparison comparison(linesOf(before).join(QLatin1Char('\n')).toUtf8());
    comparison.demand(swept.file() == registry, QStringLiteral("the registry's file is not the same to the byte"));
    const Outcome imported = swept.device.run(import);
    swept.applied();
    if (isError(verified, imported, lacksDefaults, comparison))
        return comparison.wrong;

    QStringList said;
    int status = 0;
    const QJsonObject verification = parsed(verified.out);
    for (const char *const what : {"lost", "altered"})
        for (const auto &item : verification.value(QLatin1String(what)).toArray()) {
            status = 2;
            if (!comparison.isMadeUp(word(item.toObject(), "path")))
                said.append(QLatin1String(what) + QStringLiteral(" /") + word(item.toObject(), "path"));
        }
    QStringList found;
    const Nodes after = swept.nodes();
    const auto look = [&](const QString &path, const QJsonValue &text) {
        const QJsonValue now = after.value(path);
        if (now != text)
            found.append((now.isString() ? QStringLiteral("altered ") : QStringLiteral("lost ")) + path);
    };
    for (auto node = before.cbegin(); node != before.cend(); ++node) {
        if (node->isString())
            look(node.key(), *node);
        // The entry of the old id is lost; that of the new one has what the document holds, or may lack it.
        const QString place = otherPlaceOf(node.key());
        const bool isEmpty = !before.lowerBound(node.key() + slash).key().startsWith(node.key() + slash);
        if (!place.isNull() && isEmpty && !after.contains(node.key()))
            look(place, node->isString() && node->toString().trimmed().isEmpty() ? QString() : *node);
    }
    comparison.compare("verified", said, found);
    comparison.compareOrdered("status", {QString::number(status)}, {QString::number(verified.status)});
    return comparison.wrong;
}

} // namespace

/// Plans for made-up documents on made-up devices come true.
class PlanSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPlanComesTrue_data() {
        QTest::addColumn<bool>("hasOtherLibrary");
        QTest::newRow("over the library that the programs were built with") << false;
        QTest::newRow("over a library of another make") << true;
    }

    void aPlanComesTrue() {
        QFETCH(const bool, hasOtherLibrary);
        const SweptDevice swept(hasOtherLibrary);
        Sweep sweep;
        const int cases = Sweep::cases(10, 300);
        QMap<int, int> counts;
        for (int i = 0; i < cases; ++i) {
            MadeUpRegistry registry(sweep, MadeUpRegistry::Anything);
            swept.load(registry.json());
            QCOMPARE(swept.device.run("quendarsettings -settings f -get all").err, QByteArray());
            const QByteArray exported = swept.device.read(QStringLiteral("home/f"));
            const QByteArray loaded = swept.file();
            QStringList wrong = verificationComplaints(swept, registry.lacksDefaults()) + swept.device.leftovers();
            swept.putBack(loaded);
            swept.device.write(QStringLiteral("home/f"), editedDocument(exported, sweep));
            wrong += planComplaints(swept, registry.lacksDefaults(), counts);
            QVERIFY2(wrong.isEmpty(),
                     qUtf8Printable(QStringLiteral("case %1: ").arg(i) + wrong.join(QLatin1Char('\n'))));
        }
        qInfo("%d plans: %d of changes, %d of none, %d errors", cases, counts.value(2), counts.value(0),
              counts.value(1));
    }
};

QTEST_GUILESS_MAIN(PlanSweep)
#include "plansweep.moc"
