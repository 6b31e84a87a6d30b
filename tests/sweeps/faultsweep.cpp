// SPDX-License-Identifier: MIT
#include "sweeps/faultyruns.h"
#include "sweeps/sweep.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

constexpr int statuses[] = {2, -1, 5};

/// What comes of a call that fails, in regular expressions. PATH and STATUS are the call's, SECTION is what is being
/// applied, ENTRY is what the place has in parentheses, and VALUE is the value of any setting.
struct Rule {
    const char *place;   // the line of the call, after "> ", between those of the calls before and after it
    const char *printed; // on standard error
    const char *touched; // what alone may have other settings than after an undisturbed run, or not be set
};

/// Up to the quotation mark and the blank that end a warning.
const QLatin1String anyValue("(?:(?!\" \\n)[\\s\\S])*");

const char *const ended = "error: error occured on view key: PATH, status: STATUS\n";

/// The first that fits counts.
const Rule rules[] = {
    // what is read, and the commit of all values
    {"> get ", ended, ""},
    {"> commit root/lumo-config-view\n", ended, ""},
    // an apply: `set` makes its key too, and a key that stays does no harm
    {"> (create|del) tmp/", "", ""},
    {"^del .*\n> commit tmp/", "", ""},
    {"> (set|commit|value) tmp/|> requestApply ", "error: impossible to apply: SECTION\n", ""},
    // a value
    {"> contains (.*)\nset \\1$", "Impossible to set: \"PATH\" , with: \"VALUE\" \n", "PATH"},
    {"> contains ", "", ""},
    // a printer
    {"> create .*/printers/", "an error occured while creating printer \"PATH\" \"VALUE\" \n", "PATH"},
    {"^create (.*)\n> set \\1/name\n", "an error occured while creating printer \"ENTRY\" \"VALUE\" \n", "ENTRY"},
    {"> commit .*/printers/", "an error occured while deleting printer: \"PATH\" STATUS \n", ""},
    // a session
    {"^create .*\n> commit ", "an error occured while creating: \"PATH\" STATUS \n", ""},
    {"> commit ", "an error occured while deleting session: \"PATH\" STATUS \n", ""},
    // a value; a session that is made, or what is deleted: only its commit is looked at
    {"> set ", ended, ""},
    {"> (create|del) ", "", "PATH"},
};

/// What a rule says of a call.
struct Expectation {
    QString printed;
    QString touched;

    bool isError() const { return printed.startsWith(QLatin1String("error: ")); }
    /// Ends the run with nothing written after what was committed before.
    bool isRegistryError() const { return printed.startsWith(QLatin1String("error: error occured ")); }
};

/// What the rules say of the call @p number, from 0 on, of an undisturbed run.
Expectation expectationOf(const QStringList &calls, int number, int status) {
    const QString place =
        QStringLiteral("%1\n> %2\n%3").arg(calls.value(number - 1), calls.at(number), calls.value(number + 1));
    const int apply = calls.lastIndexOf(QRegularExpression(QStringLiteral("create tmp/.*")), number);
    const int request = calls.indexOf(QRegularExpression(QStringLiteral("requestApply .*")), qMax(apply, 0));
    for (const Rule &rule : rules) {
        const auto match = QRegularExpression(QLatin1String(rule.place)).match(place);
        if (!match.hasMatch())
            continue;
        const auto filledIn = [&](const char *text) {
            const QString path = calls.at(number).section(QLatin1Char(' '), 1);
            return QString::fromLatin1(text)
                .replace(QLatin1String("PATH"), QRegularExpression::escape(path))
                .replace(QLatin1String("STATUS"), QString::number(status))
                .replace(QLatin1String("SECTION"), calls.value(request).section(QLatin1Char('/'), -1))
                .replace(QLatin1String("VALUE"), anyValue)
                .replace(QLatin1String("ENTRY"), QRegularExpression::escape(match.captured(1)));
        };
        return {filledIn(rule.printed), filledIn(rule.touched)};
    }
    qFatal("no rule for %s", qUtf8Printable(place));
}

/// How a run ended, if not as expected.
QStringList complaints(const Outcome &outcome, const Expectation &expected) {
    QString printed = QLatin1Char('^') + expected.printed;
    if (!expected.touched.isEmpty())
        printed += QStringLiteral("(Impossible to set: \"%1%2\" \n)*").arg(expected.touched, anyValue);
    const QString err = QString::fromUtf8(outcome.err);
    if (outcome.status == (expected.isError() ? 1 : 0) && outcome.out.isEmpty() &&
        QRegularExpression(printed + QStringLiteral("\\z")).match(err).hasMatch())
        return {};
    return {QString::number(outcome.status), QString::fromUtf8(outcome.out), err};
}

QSet<QString> linesOf(const QJsonObject &directory, const QString &path) {
    QSet<QString> lines = {path + QLatin1Char('/')};
    for (auto entry = directory.begin(); entry != directory.end(); ++entry) {
        const QString below = path + QLatin1Char('/') + entry.key();
        lines.unite(entry->isObject() ? linesOf(entry->toObject(), below)
                                      : QSet<QString>{below + QStringLiteral("/ = ") + entry->toString()});
    }
    return lines;
}

/// Where two dumps differ, but for what lies at or below what may be touched.
QStringList differences(const QByteArray &first, const QByteArray &second, const QString &touched) {
    if (first == second)
        return {};
    const auto lines = [](const QByteArray &dump) {
        return linesOf(QJsonDocument::fromJson(dump).object(), QStringLiteral("root"));
    };
    const QStringList all = ((lines(first) - lines(second)) + (lines(second) - lines(first))).values();
    const QString allowed = touched.isEmpty() ? QStringLiteral("$") : touched + QLatin1Char('/');
    return all.filter(QRegularExpression(QStringLiteral("^(?!%1)").arg(allowed)));
}

/// Whether the sweep goes over a fault: over all of them, over every tenth, or over a dozen of the reads, checks and
/// writes, a dozen in the applies, and all of the rest.
bool isChosen(Sweep &sweep, int fault, const QString &call, int calls) {
    if (Sweep::isLong() || Sweep::isTenth())
        return Sweep::isLong() || fault % 10 == 0;
    static const QRegularExpression frequent(QStringLiteral("^(get|contains|set) root"));
    static const QRegularExpression apply(QStringLiteral("tmp/applying|^requestApply"));
    const int oneOf = frequent.match(call).hasMatch() ? calls / 4 : apply.match(call).hasMatch() ? 9 : 1;
    return sweep.below(oneOf) == 0;
}

} // namespace

/// Every registry call of an export, an import, a plan and a verification of the example device, one after the other,
/// fails.
class FaultSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFailureEndsAsPromised_data() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("export") << QByteArray("quendarsettings -settings /dev/null -get all");
        QTest::newRow("import") << QByteArray("quendarsettings -settings '" EXAMPLES
                                              "/new-configuration.xml' -set all");
    }

    void eachFailureEndsAsPromised() {
        QFETCH(const QByteArray, command);
        const FaultyRuns runs(command);
        QCOMPARE(runs.run().err, QByteArray());
        const QStringList calls = runs.calls();
        const QByteArray undisturbed = runs.settings();

        Sweep sweep;
        int swept = 0;
        QByteArray committed; // before the call, once it is known
        for (int fault = 0; fault < 3 * calls.size(); ++fault) {
            const int number = fault / 3;
            const int status = statuses[fault % 3];
            if (calls.value(number - 1).startsWith(QLatin1String("commit ")) && fault % 3 == 0)
                committed.clear();
            if (!isChosen(sweep, fault, calls.at(number), calls.size()))
                continue;
            const Expectation expected = expectationOf(calls, number, status);
            QStringList wrong = complaints(runs.run(number + 1, status), expected);
            const QByteArray settings = runs.settings();
            if (!expected.isRegistryError())
                wrong += runs.device.leftovers();
            else if (committed.isEmpty())
                committed = runs.committedBefore(number + 1);
            wrong += differences(settings, expected.isRegistryError() ? committed : undisturbed, expected.touched);
            const QString what = QStringLiteral("%1 returned %2: ").arg(calls.at(number), QString::number(status));
            QVERIFY2(wrong.isEmpty(), qUtf8Printable(what + wrong.join(QLatin1Char('\n'))));
            ++swept;
        }
        qInfo("%d calls, %d of %d faults swept", calls.size(), swept, 3 * calls.size());
    }

    void eachFailureInAPlanIsAnErrorOrMakesNoDifference_data() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("plan") << QByteArray("plan");
        QTest::newRow("verify") << QByteArray("verify");
    }

    void eachFailureInAPlanIsAnErrorOrMakesNoDifference() {
        QFETCH(const QByteArray, command);
        const FaultyRuns runs("quendar-change " + command + " '" EXAMPLES "/new-configuration.xml' --json");
        const Outcome undisturbed = runs.run();
        QVERIFY(undisturbed.status != 1);
        const QStringList calls = runs.calls();

        Sweep sweep;
        int swept = 0;
        int errors = 0;
        for (int fault = 0; fault < 3 * calls.size(); ++fault) {
            const QString &call = calls.at(fault / 3);
            if (!isChosen(sweep, fault, call, calls.size()))
                continue;
            const Outcome outcome = runs.run(fault / 3 + 1, statuses[fault % 3]);
            const bool isError = outcome.status == 1 && outcome.out.startsWith("{\"error\":");
            const bool isSame = outcome.status == undisturbed.status && outcome.out == undisturbed.out;
            QVERIFY2((isError || isSame) && outcome.err.isEmpty() && runs.isPristine(),
                     qUtf8Printable(call + QStringLiteral(" returned %1: ").arg(statuses[fault % 3]) +
                                    QString::fromUtf8(outcome.out + outcome.err)));
            QCOMPARE(runs.device.leftovers(), QStringList());
            ++swept;
            errors += isError ? 1 : 0;
        }
        qInfo("%d calls, %d of %d faults swept, %d errors", calls.size(), swept, 3 * calls.size(), errors);
    }
};

QTEST_GUILESS_MAIN(FaultSweep)
#include "faultsweep.moc"
