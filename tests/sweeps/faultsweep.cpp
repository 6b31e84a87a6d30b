// SPDX-License-Identifier: MIT
#include "sweeps/faultyruns.h"
#include "sweeps/sweep.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

constexpr int statuses[] = {2, -1, 5};

/// A call that fails.
struct Fault {
    QString operation;
    QString path;
    int status;
    int call; // its number
};

/// What must come of it.
struct Expectation {
    QByteArray message; // a registry error ends the run with nothing written after what was committed before
    QString touched;    // where alone the settings and what is printed may differ from an undisturbed run's

    bool isError() const { return message.startsWith("error: "); }
    bool isRegistryError() const { return message.startsWith("error: error occured "); }
};

/// What the failure means, by its place among the calls of an undisturbed run.
Expectation expectationOf(const Fault &fault, const QStringList &calls) {
    const QString previous = calls.value(fault.call - 2);
    const QString next = calls.value(fault.call);
    const QString parent = fault.path.section(QLatin1Char('/'), 0, -2);
    const QByteArray path = fault.path.toUtf8();
    const QByteArray status = QByteArray::number(fault.status);
    const Expectation ended = {"error: error occured on view key: " + path + ", status: " + status + '\n', {}};
    const int viewCommit = calls.lastIndexOf(QStringLiteral("commit root/lumo-config-view")) + 1;

    if (fault.operation == QLatin1String("get") || fault.call == viewCommit)
        return ended;
    if (fault.call > viewCommit) { // all is stored by then; what fails is an apply, or nothing
        if (fault.operation == QLatin1String("create") || fault.operation == QLatin1String("del") ||
            previous.startsWith(QLatin1String("del ")))
            return {};
        const QRegularExpression request(QStringLiteral("^requestApply .*"));
        const int asked = fault.operation == QLatin1String("value") ? calls.lastIndexOf(request, fault.call - 1)
                                                                    : calls.indexOf(request, fault.call - 1);
        return {"error: impossible to apply: " + calls.at(asked).section(QLatin1Char('/'), -1).toUtf8() + '\n', {}};
    }
    if (fault.operation == QLatin1String("contains"))
        return next == QStringLiteral("set ") + fault.path
                   ? Expectation{"Impossible to set: \"" + path + "\" , with:", fault.path}
                   : Expectation();
    const bool isNameOfNew = previous == QStringLiteral("create ") + parent;
    const bool isNewPrinter = next == QStringLiteral("set %1/name").arg(fault.path);
    if (isNameOfNew || isNewPrinter) {
        const QString printer = isNewPrinter ? fault.path : parent;
        return {"an error occured while creating printer \"" + printer.toUtf8() + '"', printer};
    }
    if (fault.operation == QLatin1String("set"))
        return ended;
    if (fault.operation == QLatin1String("commit")) {
        const QByteArray deleted = path.contains("/printers/") ? "deleting printer" : "deleting session";
        const QByteArray what = previous.startsWith(QLatin1String("create ")) ? "creating" : deleted;
        return {"an error occured while " + what + ": \"" + path + "\" " + status + " \n", {}};
    }
    if (fault.operation == QLatin1String("create") && path.contains("/printers/"))
        return {"an error occured while creating printer \"" + path + '"', fault.path};
    return {{}, fault.path}; // create of a session, del
}

/// What is wrong with how a run ended; empty when nothing is.
QByteArray complaint(const Outcome &outcome, const Expectation &expected) {
    const QByteArray unset = "Impossible to set: \"";
    const bool isMore = expected.touched.isEmpty()
                            ? outcome.err != expected.message
                            : outcome.err.count(unset) != outcome.err.count(unset + expected.touched.toUtf8()) ||
                                  outcome.err.count("occured") != expected.message.count("occured");
    const bool isExpected = outcome.status == (expected.isError() ? 1 : 0) && outcome.out.isEmpty() &&
                            outcome.err.startsWith(expected.message);
    return isExpected && !isMore ? QByteArray() : QByteArray::number(outcome.status) + ' ' + outcome.out + outcome.err;
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

/// Where two dumps differ, but for what lies at or below @p path.
QStringList differences(const QByteArray &first, const QByteArray &second, const QString &path) {
    const auto lines = [](const QByteArray &dump) {
        return linesOf(QJsonDocument::fromJson(dump).object(), QStringLiteral("root"));
    };
    const QStringList all = ((lines(first) - lines(second)) + (lines(second) - lines(first))).values();
    const QString allowed = path.isEmpty() ? QStringLiteral("$") : QRegularExpression::escape(path) + QLatin1Char('/');
    return all.filter(QRegularExpression(QStringLiteral("^(?!%1)").arg(allowed)));
}

} // namespace

/// Every registry call of an export and an import of the example device, one after the other, fails.
class FaultSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFailureEndsAsPromised_data() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        QTest::addColumn<QStringList>("arguments");
        const QString all = QStringLiteral("all");
        QTest::newRow("export") << QStringList{QStringLiteral("/dev/null"), QStringLiteral("-get"), all};
        QTest::newRow("import") << QStringList{QStringLiteral(EXAMPLES "/new-configuration.xml"),
                                               QStringLiteral("-set"), all};
    }

    void eachFailureEndsAsPromised() {
        QFETCH(const QStringList, arguments);
        const FaultyRuns runs(arguments);
        QCOMPARE(runs.run().err, QByteArray());
        const QStringList calls = runs.calls();
        const QByteArray undisturbed = runs.settings();

        Sweep sweep;
        QByteArray committed; // before the call; nothing but a commit changes it
        int swept = 0;
        for (int number = 0; number < 3 * calls.size(); ++number) {
            const int call = number / 3 + 1;
            const QString &recorded = calls.at(call - 1);
            if (calls.value(call - 2).startsWith(QLatin1String("commit ")) && number % 3 == 0)
                committed.clear();
            if (!isChosen(sweep, number, recorded, calls.size()))
                continue;
            const Fault fault{recorded.section(QLatin1Char(' '), 0, 0), recorded.section(QLatin1Char(' '), 1),
                              statuses[number % 3], call};
            const Expectation expected = expectationOf(fault, calls);
            QByteArray wrong = complaint(runs.run(call, fault.status), expected);
            const QByteArray settings = runs.settings();
            if (!expected.isRegistryError())
                wrong += runs.device.leftovers().join(QLatin1Char(' ')).toUtf8();
            else if (committed.isEmpty())
                committed = runs.committedBefore(call);
            const QByteArray &allowed = expected.isRegistryError() ? committed : undisturbed;
            wrong += differences(settings, allowed, expected.touched).join(QLatin1Char(' ')).toUtf8();
            QVERIFY2(wrong.isEmpty(),
                     qUtf8Printable(recorded + QStringLiteral(" returned ") + QString::number(fault.status) +
                                    QLatin1Char('\n') + QString::fromUtf8(wrong)));
            ++swept;
        }
        qInfo("%d calls, %d of %d faults swept", calls.size(), swept, 3 * calls.size());
    }

private:
    /// All of them, every tenth, or a dozen of the reads, checks and writes, a dozen in the applies, and all of the
    /// rest.
    static bool isChosen(Sweep &sweep, int number, const QString &call, int calls) {
        if (Sweep::isLong() || Sweep::isTenth())
            return Sweep::isLong() || number % 10 == 0;
        static const QRegularExpression frequent(QStringLiteral("^(get|contains|set) root"));
        static const QRegularExpression apply(QStringLiteral("tmp/applying|^requestApply"));
        const int oneOf = frequent.match(call).hasMatch() ? calls / 4 : apply.match(call).hasMatch() ? 9 : 1;
        return sweep.below(oneOf) == 0;
    }
};

QTEST_GUILESS_MAIN(FaultSweep)
#include "faultsweep.moc"
