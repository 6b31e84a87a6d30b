// SPDX-License-Identifier: MIT
#include "sweeps/faultyruns.h"
#include "sweeps/sweep.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSystemSemaphore>
#include <QtCore/QThread>
#include <QtTest/QtTest>

/// Imports of the example device are ended by a signal at points over their whole length.
class CrashSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        runs.device.environment = withoutLeakCheck(runs.device.environment);
        QCOMPARE(runs.run().err, QByteArray());
        wanted = runs.settings();
        calls = runs.calls();
        for (int call = 1; call <= calls.size(); ++call)
            if (isCommit(call, QLatin1String("root/")))
                states.insert(runs.committedBefore(call));
        states.insert(wanted);

        runs.reset();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(runs.device.run(import).status, 0);
        length = static_cast<int>(timer.nsecsElapsed() / 1000);
        qputenv("TMPDIR", runs.device.environment.value("TMPDIR")); // where the semaphores are
    }

    void anImportKilledAtACommitCanBeRunAgain() {
        for (int call = 1; call <= calls.size() && !QTest::currentTestFailed(); ++call) {
            if (!isCommit(call) && !isCommit(call - 1))
                continue;
            QVERIFY(states.contains(runs.committedBefore(call)));
            runAgain();
            removeOrphans();
        }
        runs.reset();
        QCOMPARE(runs.device.leftovers(), QStringList());
    }

    void anImportKilledAnywhereCanBeRunAgain() {
        Sweep sweep;
        QSet<QByteArray> met;
        const int wantedKills = Sweep::cases(4, 200);
        int killed = 0;
        int orphans = 0;
        for (int run = 0; killed < wantedKills && !QTest::currentTestFailed(); ++run) {
            QVERIFY2(run < 50 * wantedKills, "the imports end before they are killed");
            killed += wasKilledAfter(sweep.below(length), run % 2 != 0) ? 1 : 0;
            // the service removes what the tool has left
            QVERIFY(waitUntil([&] { return runs.device.processes().isEmpty(); }));
            QCOMPARE(runs.device.run("sqlite3 -cmd '.timeout 30000' ../registry.db 'PRAGMA integrity_check'").out,
                     QByteArray("ok\n"));
            const QByteArray settings = runs.settings();
            QVERIFY(states.contains(settings));
            met.insert(settings);
            orphans += removeOrphans();
            runAgain();
            QStringList left = runs.device.leftovers();
            left.removeAll(QStringLiteral("an apply key"));
            QCOMPARE(left, QStringList());
        }
        qInfo("%d kills within %d us, %d of %d states between commits met, %d apply keys left", killed, length,
              met.size(), states.size(), orphans);
    }

private:
    void runAgain() const {
        QCOMPARE(runs.device.run(import).err, QByteArray());
        QCOMPARE(runs.settings(), wanted);
    }

    bool isCommit(int call, QLatin1String path = QLatin1String()) const {
        return calls.value(call - 1).startsWith(QLatin1String("commit ") + path);
    }

    bool wasKilledAfter(int microseconds, bool withService) const {
        runs.reset();
        Program tool = runs.device.start("exec " + import);
        QThread::usleep(static_cast<unsigned long>(microseconds));
        tool.kill();
        for (auto all = runs.device.processes(); withService && !all.isEmpty(); all = runs.device.processes())
            std::for_each(all.cbegin(), all.cend(), [](pid_t process) { ::kill(process, SIGKILL); });
        return tool.wait().status == -SIGKILL;
    }

    /// Removes the semaphores of applies that nobody knows of any more; returns the number of their keys.
    int removeOrphans() const {
        const QByteArray dump = runs.device.dump("tmp/applying");
        const QStringList keys = QJsonDocument::fromJson(dump).object().keys();
        for (const QString &key : keys) // its owner removes it
            const QSystemSemaphore owned(QStringLiteral("tmp/applying/") + key, 0, QSystemSemaphore::Create);
        return keys.size();
    }

    const QByteArray import = "quendarsettings -settings '" EXAMPLES "/new-configuration.xml' -set all";
    FaultyRuns runs{import};
    QStringList calls; // of an import
    QByteArray wanted;
    QSet<QByteArray> states; // between two commits
    int length = 0;          // of an import, in microseconds
};

QTEST_GUILESS_MAIN(CrashSweep)
#include "crashsweep.moc"
