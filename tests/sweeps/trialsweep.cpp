// SPDX-License-Identifier: MIT
#include "sweeps/comparison.h"
#include "sweeps/sweep.h"
#include "sweeps/trieddevice.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

namespace {

const QLatin1String city("root/lumo-config-view/time_zone/city");

/// Writes what the change of the example device writes as well, and something else.
const QByteArray otherImport = "quendarsettings -settings \"$TMPDIR/../other.xml\" -set all";
const char otherDocument[] = "<lumo_config><audio><volume>7</volume></audio>"
                             "<time_zone><city>Reykjavik</city></time_zone></lumo_config>";

/// What is done with a change, and the processes that write then.
const struct Course {
    const char *steps;
    const char *roles;
} courses[] = {{"try, over", "try guard apply-sections"},
               {"try, confirm", "confirm"},
               {"try, revert, confirm", "revert"},
               {"try, confirm, revert", "revert apply-sections"},
               {"try, restart, resume, over", "resume guard"},
               {"apply --check true", "apply"},
               {"apply --check false --check-for 1s", "apply"}};

} // namespace

/// Changes of the example device that are killed, that cannot be written, that others interfere with.
class TrialSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        tried.device.write(QStringLiteral("home/f"), contentsOf(QStringLiteral(EXAMPLES "/new-configuration.xml")));
        tried.device.write(QStringLiteral("other.xml"), otherDocument);
        before = tried.settings();
        QCOMPARE(tried.device.run("quendarsettings -settings f -set all").err, QByteArray());
        after = tried.settings();
        changed = tried.applied();
        tried.reset();
        tried.device.run(otherImport);
        beforeWithOther = tried.settings();
    }

    void init() {
        hasKilled = false;
        tried.reset();
    }

    void aKillLeavesAllOrNothing_data() {
        QTest::addColumn<QByteArray>("course");
        QTest::addColumn<QString>("roles");
        for (const Course &course : courses)
            QTest::newRow(course.steps) << QByteArray(course.steps) << QString::fromLatin1(course.roles);
    }

    /// At each writing call of each process, and at any time. Half of the kills are restarts of the device.
    void aKillLeavesAllOrNothing() {
        QFETCH(const QString, roles);
        QElapsedTimer timer;
        timer.start();
        const QStringList calls = callsOf("*");
        QVERIFY(!calls.isEmpty());
        const auto length = static_cast<int>(timer.nsecsElapsed() / 1000);
        int killed = 0;
        for (const QString &role : roles.split(QLatin1Char(' '))) {
            const int all = calls.filter(QRegularExpression(QLatin1Char('^') + role + QLatin1Char(' '))).size();
            for (int i = 0; i < Sweep::cases(1, all); ++i) {
                const int number = 1 + (Sweep::isLong() ? i : sweep.below(all));
                tried.reset();
                tried.strike(role.toLatin1() + " *", OtherWorld::Kill, number);
                takeCourse();
                killed += tried.hasStruck() ? 1 : 0; // fewer calls may have been needed this time
                const QString call = tried.calls().value(number - 1);
                const QByteArray wrong = said(number, call, complaintsAfterKill(sweep.chance(50)));
                QVERIFY2(wrong.isEmpty(), wrong.constData());
            }
        }
        const int wanted = killed + Sweep::cases(1, 40);
        for (int run = 0; killed < wanted; ++run) {
            QVERIFY2(run < 20 * wanted, "all ends before it is killed");
            tried.reset();
            const int moment = sweep.below(length);
            const bool isRestart = sweep.chance(50);
            hasKilled = false;
            std::thread killer([&] {
                std::this_thread::sleep_for(std::chrono::microseconds(moment));
                auto all = isRestart ? tried.device.processes() : processesOfChange();
                if (!isRestart && !all.isEmpty())
                    all = {all.at(sweep.below(all.size()))};
                for (const pid_t process : all)
                    ::kill(process, SIGKILL);
                hasKilled = !all.isEmpty();
            });
            takeCourse();
            killer.join();
            killed += hasKilled ? 1 : 0;
            const QByteArray wrong = said(moment, QStringLiteral("us"), complaintsAfterKill(isRestart));
            QVERIFY2(wrong.isEmpty(), wrong.constData());
        }
        qInfo("%d calls within %d us, %d kills", calls.size(), length, killed);
    }

    void aWriteThatFailsLeavesAllOrNothing_data() {
        QTest::addColumn<QByteArray>("course");
        for (const Course &course : courses)
            QTest::newRow(course.steps) << QByteArray(course.steps);
    }

    /// On a disk that is full or read-only, once or from then on.
    void aWriteThatFailsLeavesAllOrNothing() {
        const QByteArray durable = "* * @(state|registry)*";
        const int calls = callsOf(durable).size();
        QVERIFY(calls > 0);
        QMap<int, int> statuses;
        for (int i = 0; i < Sweep::cases(1, 150); ++i) {
            const int number = 1 + sweep.below(calls);
            tried.reset();
            tried.world->error = sweep.chance(50) ? ENOSPC : EROFS;
            tried.strike(durable, OtherWorld::Fail, number, sweep.chance(50));
            const auto [status, command] = takeCourse();
            ++statuses[status];
            const QString call = tried.calls().value(number - 1);
            const QJsonObject left = tried.status();
            tried.world->deed = OtherWorld::None;
            QStringList wrong;
            if (status == 5 && left.value(QLatin1String("ended")).isNull() &&
                !left.value(QLatin1String("watched")).toBool())
                wrong.append(QStringLiteral("nobody goes on with it: ") +
                             QString::fromUtf8(QJsonDocument(left).toJson(QJsonDocument::Compact)));
            if (status == 1 && (command == "try" || command == "apply") && tried.settings() != before)
                wrong.append(QStringLiteral("an error has changed something"));
            if (!tried.finish())
                wrong.append(QStringLiteral("it stays open"));
            wrong += tried.complaints(before, after);
            wrong.removeAll(QStringLiteral("an apply key")); // it does no harm
            const bool isToBeKept = status == 0 && (command == "apply" || command == "confirm");
            const bool isToBePutBack = status == 3 || status == 5 || (status == 0 && command == "revert");
            const QString state = word(tried.status(), "state");
            if ((isToBeKept && state != QLatin1String("confirmed")) ||
                (isToBePutBack && state != QLatin1String("reverted")))
                wrong.append(QStringLiteral("%1 after status %2").arg(state, QString::number(status)));
            const QByteArray all = said(number, call, wrong);
            QVERIFY2(all.isEmpty(), all.constData());
        }
        qInfo() << calls << "calls; runs by exit status:" << statuses;
    }

    void whatAnImportWritesMeanwhileStays_data() {
        QTest::addColumn<QByteArray>("call"); // before which one somebody else imports
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("isConflict");
        QTest::newRow("before the plan") << QByteArray() << 0 << false;
        QTest::newRow("between plan and commit") << QByteArray("try rename state/journal.json") << 1 << false;
        QTest::newRow("after the commit") << QByteArray("try rename state/state.json") << 2 << true;
        QTest::newRow("while sections are applied") << QByteArray("apply-sections commit *") << 3 << true;
        QTest::newRow("while it waits") << QByteArray() << 1 << true;
    }

    void whatAnImportWritesMeanwhileStays() {
        QFETCH(const QByteArray, call);
        QFETCH(const int, number);
        QFETCH(const bool, isConflict);
        for (const bool isForced : {false, true}) {
            tried.reset();
            qstrncpy(tried.world->command, otherImport.constData(), sizeof tried.world->command);
            if (call.isEmpty() && number == 0)
                tried.device.run(otherImport);
            else if (!call.isEmpty())
                tried.strike(call, OtherWorld::Run, number);
            QCOMPARE(tried.device.run("quendar-change try f --confirm-within 1h").status, 0);
            QVERIFY(call.isEmpty() || tried.hasStruck());
            if (call.isEmpty() && number == 1)
                tried.device.run(otherImport);
            QCOMPARE(texts(tried.status().value(QLatin1String("conflicts"))),
                     isConflict ? QStringList(city) : QStringList());
            QCOMPARE(tried.device.run(QByteArray("quendar-change revert") + (isForced ? " --force" : "")).status,
                     isConflict && !isForced ? 3 : 0);
            QVERIFY(tried.finish());
            QByteArray expected = beforeWithOther;
            if (isConflict && isForced)
                expected.replace("Reykjavik", "Paris");
            QCOMPARE(tried.complaints(expected, {}).join(QLatin1Char('\n')), QString());
        }
    }

    void aRegistryThatIsNeverTheSameIsGivenUp() {
        qstrncpy(tried.world->command, "tessaro set root/lumo-config-view/time_zone/city $$",
                 sizeof tried.world->command);
        tried.strike("try rename state/journal.json", OtherWorld::Run, 1, false);
        const Outcome outcome = tried.device.run("quendar-change try f --confirm-within 1h");
        QCOMPARE(outcome.status, 1);
        QCOMPARE(tried.world->calls, 3);
        QByteArray expected = before;
        expected.replace("\"city\": \"Paris\"",
                         "\"city\": \"" +
                             tried.device.run("tessaro get root/lumo-config-view/time_zone/city").out.trimmed() + '"');
        QCOMPARE(tried.complaints(expected, {}).join(QLatin1Char('\n')), QString());
    }

    void oneOfTwoAtOnceIsRefused() {
        for (int i = 0; i < Sweep::cases(2, 50); ++i) {
            tried.reset();
            Program one = tried.device.start("quendar-change try f --confirm-within 1h --json");
            Program other = tried.device.start("quendar-change try f --confirm-within 1h --json");
            const Outcome outcomes[] = {one.wait(), other.wait()};
            const int refused = outcomes[0].status == 0 ? 1 : 0;
            QCOMPARE(outcomes[1 - refused].status, 0);
            QCOMPARE(outcomes[refused].status, 4);
            QCOMPARE(word(parsed(outcomes[refused].out), "open"), word(parsed(outcomes[1 - refused].out), "id"));
            QVERIFY(tried.finish());
            QCOMPARE(tried.complaints(before, after).join(QLatin1Char('\n')), QString());
        }
    }

    void theWallClockDecidesNothing_data() {
        QTest::addColumn<int>("years");
        QTest::newRow("set back") << -20;
        QTest::newRow("set forth") << 20;
    }

    void theWallClockDecidesNothing() {
        QFETCH(const int, years);
        tried.device.run("quendar-change try f --confirm-within 1h");
        tried.world->wallClockAhead = years * 31556952LL;
        tried.strike("guard rename state/state.json", OtherWorld::None);
        tried.advance(1000);
        QVERIFY(waitUntil([this] { return tried.hasStruck(); })); // the guard has looked
        const int remaining = tried.status().value(QLatin1String("remaining_s")).toInt();
        QVERIFY2(remaining > 2400 && remaining <= 2600, QByteArray::number(remaining).constData());
        tried.restart();
        tried.world->wallClockAhead = -years * 31556952LL;
        QCOMPARE(tried.device.run("quendar-change resume").status, 0);
        QCOMPARE(word(tried.status(), "state"), QStringLiteral("trying"));
        QVERIFY(tried.finish());
        QCOMPARE(tried.complaints(before, {}).join(QLatin1Char('\n')), QString());
    }

    void aSecondRestartPutsBackAtOnce_data() {
        QTest::addColumn<bool>("isAsked");
        QTest::newRow("after one that nobody asked for") << false;
        QTest::newRow("after that of the post-action") << true;
    }

    void aSecondRestartPutsBackAtOnce() {
        QFETCH(const bool, isAsked);
        if (isAsked)
            tried.addHook("[ -e ../asked ] || echo reboot:reboot >/tmp/last-apply-command; touch ../asked");
        tried.device.run("quendar-change try f --confirm-within 1h --check true");
        QCOMPARE(tried.status().value(QLatin1String("restart_awaited")).toBool(), isAsked);
        for (const char *const state : {"trying", "reverted"}) {
            tried.restart();
            QCOMPARE(tried.device.run("quendar-change resume").status, 0);
            QTRY_COMPARE_WITH_TIMEOUT(word(tried.status(), "state"), QLatin1String(state), 30000);
        }
        QCOMPARE(tried.complaints(before, {}).join(QLatin1Char('\n')), QString());
    }

private:
    /// Of the undisturbed course; none where something is wrong with that already.
    QStringList callsOf(const QByteArray &counted) {
        tried.count(counted);
        takeCourse();
        return tried.complaints(before, after).isEmpty() ? tried.calls() : QStringList();
    }

    /// Where a service is killed, its apply takes the whole limit.
    QVector<pid_t> processesOfChange() const {
        auto all = tried.device.processes();
        const auto isOther = [](pid_t process) {
            return contentsOf(QStringLiteral("/proc/%1/comm").arg(process)) != "quendar-change\n";
        };
        all.erase(std::remove_if(all.begin(), all.end(), isOther), all.end());
        return all;
    }

    static QByteArray said(int place, const QString &what, const QStringList &wrong) {
        return wrong.isEmpty()
                   ? QByteArray()
                   : QStringLiteral("%1 %2: ").arg(place).arg(what).toUtf8() + wrong.join(QLatin1Char('\n')).toUtf8();
    }

    /// When nothing is open any more. What was changed when the device was restarted must have been applied again.
    QStringList complaintsAfterKill(bool isRestart) {
        if (isRestart)
            tried.restart();
        const bool isChanged = isRestart && tried.settings() == after;
        tried.device.write(QStringLiteral("applied"), {});
        QStringList wrong;
        if (!tried.finish())
            wrong.append(QStringLiteral("it stays open"));
        wrong += tried.complaints(before, after);
        if (isChanged && word(tried.status(), "state") == QLatin1String("reverted") && tried.applied() != changed)
            wrong.append(QStringLiteral("applied again: ") + tried.applied().join(QLatin1Char(' ')));
        return wrong;
    }

    /// Does what the row says until something is killed. Returns the exit status of the last command, and its name.
    QPair<int, QByteArray> takeCourse() {
        QFETCH(const QByteArray, course);
        QPair<int, QByteArray> last;
        for (QByteArray step : course.split(',')) {
            step = step.trimmed();
            const QByteArray id = step == "confirm" || step == "revert" ? word(tried.status(), "id").toUtf8() : "";
            const QByteArray options = step == "try" ? " f --confirm-within 1h" : step.startsWith("apply") ? " f" : "";
            if (step == "restart") {
                tried.restart();
            } else if (step == "over") {
                tried.advance(7200);
                waitUntil([this] { return hasStruck() || tried.isClosed(); });
            } else {
                last = {tried.device.run("quendar-change " + step + options + ' ' + id).status,
                        step.split(' ').first()};
            }
            if (hasKilled || (tried.hasStruck() && tried.world->deed == OtherWorld::Kill))
                break;
        }
        return last;
    }

    bool hasStruck() const { return hasKilled || tried.hasStruck(); }

    Sweep sweep;
    TriedDevice tried;
    QByteArray before;
    QByteArray after;
    QByteArray beforeWithOther;
    QStringList changed; // sections
    std::atomic<bool> hasKilled{false};
};

QTEST_GUILESS_MAIN(TrialSweep)
#include "trialsweep.moc"
