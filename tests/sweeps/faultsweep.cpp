#include "sweeps/faultyruns.h"
#include "sweeps/sweep.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

const QString view = QStringLiteral("root/lumo-config-view");

/// A call that fails.
struct Fault {
    QString operation;
    QString path;
    int status;
    int call; // its number

    QByteArray tessaroError() const {
        return QStringLiteral("error: error occured on view key: %1, status: %2\n")
            .arg(path, QString::number(status))
            .toUtf8();
    }
};

/// What must come of it.
struct Expectation {
    int status = 0;
    QByteArray message;          // which the run prints alone; where it goes on to the end, first
    bool isEnd = false;          // nothing is written after what was committed before
    QString touched = QString(); // where alone the registry may differ from what it becomes without the fault
};

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
    return path.isEmpty()
               ? all
               : all.filter(QRegularExpression(QStringLiteral("^(?!%1/)").arg(QRegularExpression::escape(path))));
}

/// What the failure of a call means, by its place among the calls of an undisturbed run.
class Expectations {
public:
    explicit Expectations(const QStringList &recorded)
        : calls(recorded), viewCommit(recorded.lastIndexOf(QStringLiteral("commit ") + view) + 1) {}

    Expectation of(const Fault &fault) const {
        if (fault.operation == QLatin1String("get"))
            return {1, fault.tessaroError(), true};
        return fault.call > viewCommit ? ofApply(fault) : ofWrite(fault);
    }

private:
    Expectation ofWrite(const Fault &fault) const {
        const QString parent = fault.path.section(QLatin1Char('/'), 0, -2);
        const QByteArray quoted = '"' + fault.path.toUtf8() + '"';
        const QByteArray status = ' ' + QByteArray::number(fault.status) + " \n";
        if (fault.operation == QLatin1String("contains")) {
            const bool isValue = next(fault) == QStringLiteral("set ") + fault.path;
            return {0, isValue ? "Impossible to set: " + quoted + " , with:" : QByteArray(), false,
                    isValue ? fault.path : QString()};
        }
        if (fault.operation == QLatin1String("set")) {
            if (previous(fault) == QStringLiteral("create ") + parent)
                return {0, "an error occured while creating printer \"" + parent.toUtf8() + '"', false, parent};
            return {1, fault.tessaroError(), true};
        }
        if (fault.operation == QLatin1String("commit") && fault.call == viewCommit)
            return {1, fault.tessaroError(), true};
        if (fault.operation == QLatin1String("commit")) {
            if (previous(fault).startsWith(QLatin1String("create ")))
                return {0, "an error occured while creating: " + quoted + status};
            const QByteArray kind = fault.path.contains(QLatin1String("/printers/")) ? "printer" : "session";
            return {0, "an error occured while deleting " + kind + ": " + quoted + status};
        }
        return {0, QByteArray(), false, fault.path}; // create, del
    }

    /// By then all is stored; a key that could not be handed over, or whose result is missing, is an apply that failed.
    Expectation ofApply(const Fault &fault) const {
        const bool isHandedOver = fault.operation == QLatin1String("create") ||
                                  fault.operation == QLatin1String("del") ||
                                  previous(fault).startsWith(QLatin1String("del "));
        if (isHandedOver)
            return {};
        const int request = calls.indexOf(QRegularExpression(QStringLiteral("^requestApply .*")), fault.call - 1);
        const int asked = fault.operation == QLatin1String("value") ? fault.call - 2 : request;
        return {1, "error: impossible to apply: " + calls.at(asked).section(QLatin1Char('/'), -1).toUtf8() + '\n'};
    }

    QString previous(const Fault &fault) const { return calls.value(fault.call - 2); }
    QString next(const Fault &fault) const { return calls.value(fault.call); }

    const QStringList calls;
    const int viewCommit;
};

/// Why an outcome is not the expected one; empty when it is.
QByteArray unexpected(const Expectation &expected, const Outcome &outcome) {
    if (outcome.status != expected.status || !outcome.out.isEmpty() || !outcome.err.startsWith(expected.message))
        return "ended with " + QByteArray::number(outcome.status) + ": " + outcome.out + outcome.err;
    const QByteArray rest = outcome.err.mid(expected.message.size());
    if (expected.touched.isEmpty() && !rest.isEmpty())
        return "printed more: " + rest;
    for (const QByteArray &line : outcome.err.split('\n')) {
        if (!expected.touched.isEmpty() && !line.isEmpty() && !line.contains(expected.touched.toUtf8()))
            return "printed more: " + line;
    }
    return {};
}

} // namespace

/// Every registry call of an export and an import of the example device, one after the other, fails.
class FaultSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
    }

    void eachFailureEndsAsPromised_data() {
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
        const Expectations expectations(calls);
        const QByteArray wanted = runs.settings();

        Sweep sweep;
        QMap<int, QByteArray> states; // by the number of commits, since nothing else changes what the registry holds
        int commits = 0;
        int swept = 0;
        for (int call = 1; call <= calls.size(); ++call) {
            const QString &recorded = calls.at(call - 1);
            for (const int status : {2, -1, 5}) {
                if (!isChosen(sweep, recorded, calls.size()))
                    continue;
                const Fault fault{recorded.section(QLatin1Char(' '), 0, 0), recorded.section(QLatin1Char(' '), 1),
                                  status, call};
                const Expectation expected = expectations.of(fault);
                const Outcome outcome = runs.run(call, status);
                const QByteArray settings = runs.settings();
                const QByteArray name = QStringLiteral("call %1, %2, status %3: ")
                                            .arg(QString::number(call), recorded, QString::number(status))
                                            .toUtf8();
                const QByteArray trouble = unexpected(expected, outcome);
                QVERIFY2(trouble.isEmpty(), (name + trouble).constData());
                QVERIFY2(expected.isEnd || runs.device.leftovers().isEmpty(), name.constData());

                if (expected.isEnd && !states.contains(commits))
                    states.insert(commits, runs.committedBefore(call));
                const QStringList wrong =
                    differences(settings, expected.isEnd ? states.value(commits) : wanted, expected.touched);
                QVERIFY2(wrong.isEmpty(), (name + wrong.join(QLatin1Char(' ')).toUtf8()).constData());
                ++swept;
            }
            commits += recorded.startsWith(QLatin1String("commit ")) ? 1 : 0;
        }
        qInfo("%d calls, %d of %d faults swept", calls.size(), swept, 3 * calls.size());
    }

private:
    /// All of them, or some twenty of the reads, checks and writes and half of the rarer calls.
    static bool isChosen(Sweep &sweep, const QString &call, int calls) {
        static const QRegularExpression frequent(QStringLiteral("^(get|contains|set) root"));
        return Sweep::isLong() || sweep.below(frequent.match(call).hasMatch() ? calls * 3 / 20 : 6) == 0;
    }
};

QTEST_GUILESS_MAIN(FaultSweep)
#include "faultsweep.moc"
