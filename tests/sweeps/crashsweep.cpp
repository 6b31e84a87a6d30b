#include "sweeps/faultyruns.h"
#include "sweeps/sweep.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSystemSemaphore>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <csignal>

namespace {

const QStringList import = {QStringLiteral(EXAMPLES "/new-configuration.xml"), QStringLiteral("-set"),
                            QStringLiteral("all")};

void killAllOf(const Device &device) {
    for (QVector<pid_t> all = device.processes(); !all.isEmpty(); all = device.processes()) {
        for (const pid_t process : qAsConst(all))
            ::kill(process, SIGKILL);
    }
}

} // namespace

/// Imports of the example device are ended by a signal at points over their whole length.
class CrashSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        QCOMPARE(runs.run().status, 0);
        wanted = runs.settings();
        const QStringList calls = runs.calls();
        for (int call = 1; call <= calls.size(); ++call) {
            if (calls.at(call - 1).startsWith(QLatin1String("commit root/")))
                states.insert(runs.committedBefore(call));
        }
        states.insert(wanted);
        QCOMPARE(runs.device.leftovers(), QStringList());

        runs.reset();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(runs.device.importFrom(import.first()).status, 0);
        length = timer.nsecsElapsed() / 1000;
        qputenv("TMPDIR", runs.device.environment.value("TMPDIR")); // where the semaphores are
    }

    void anImportThatWasKilledCanBeRunAgain_data() {
        QTest::addColumn<bool>("withService");
        QTest::newRow("the tool") << false;
        QTest::newRow("the tool and the apply service") << true;
    }

    void anImportThatWasKilledCanBeRunAgain() {
        QFETCH(const bool, withService);
        Sweep sweep;
        QSet<QByteArray> met;
        int killed = 0;
        int orphans = 0;
        for (int run = 0; run < Sweep::cases(5, 120); ++run) {
            const auto delay = static_cast<unsigned long>(sweep.below(static_cast<int>(length)));
            const QByteArray name = "run " + QByteArray::number(run) + ", after us " + QByteArray::number(int(delay));
            killed += wasKilledAfter(delay, withService) ? 1 : 0;

            // what the tool has left, the service cleans up
            QVERIFY2(waitUntil([&] { return runs.device.processes().isEmpty(); }), name.constData());
            QCOMPARE(integrity(), QByteArray("ok\n"));
            const QByteArray settings = runs.settings();
            QVERIFY2(states.contains(settings), name.constData());
            met.insert(settings);
            orphans += cleanUp();

            QCOMPARE(runs.device.importFrom(import.first()).err, QByteArray());
            QVERIFY2(runs.settings() == wanted, name.constData());
            QStringList left = runs.device.leftovers();
            left.removeAll(QStringLiteral("an apply key"));
            QVERIFY2(left.isEmpty(), (name + ' ' + left.join(QLatin1Char(' ')).toUtf8()).constData());
        }
        qInfo("%d kills within %lld us, %d of %d states between commits met, %d apply keys left", killed,
              static_cast<long long>(length), met.size(), states.size(), orphans);
    }

private:
    bool wasKilledAfter(unsigned long microseconds, bool withService) const {
        runs.reset();
        Program tool = runs.device.startTool(QStringList(QStringLiteral("-settings")) + import);
        QThread::usleep(microseconds);
        tool.kill();
        if (withService)
            killAllOf(runs.device);
        return tool.wait().status == -SIGKILL;
    }

    QByteArray integrity() const {
        return run(QStringLiteral("sqlite3"),
                   {QStringLiteral("-cmd"), QStringLiteral(".timeout 30000"),
                    runs.device.path(QStringLiteral("registry.db")), QStringLiteral("PRAGMA integrity_check")})
            .out;
    }

    /// Removes the semaphores of applies that were prepared and not yet asked for, of which nobody else knows; returns
    /// the number of their keys.
    int cleanUp() const {
        const QByteArray dump = runs.device.dump(QStringLiteral("tmp/applying"));
        const QStringList keys = QJsonDocument::fromJson(dump).object().keys();
        for (const QString &key : keys) // its owner removes it
            const QSystemSemaphore owned(QStringLiteral("tmp/applying/") + key, 0, QSystemSemaphore::Create);
        return keys.size();
    }

    const FaultyRuns runs{import};
    QByteArray wanted;
    QSet<QByteArray> states;
    qint64 length = 0; // of an import, in microseconds
};

QTEST_GUILESS_MAIN(CrashSweep)
#include "crashsweep.moc"
