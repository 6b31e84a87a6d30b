#include "registry/tessaroclient.h"
#include "support/device.h"

#include <QtCore/QSystemSemaphore>
#include <QtTest/QtTest>

#include <sys/stat.h>
#include <sys/wait.h>

namespace {

const QString section = QStringLiteral("root/view/display");
const QString trigger = QStringLiteral("tmp/applying/{0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}");

/// A device on which this process is the one that applies.
class ApplyingDevice : public Device {
public:
    ApplyingDevice() {
        environment.insert("TESSARO_APPLY_LINGER", "1"); // which is 5
        environment.insert("TESSARO_APPLY_TIMEOUT", "3");
        for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
            qputenv(variable.key().constData(), *variable);
    }

    int makeTrigger(const QString &value) {
        client.create(trigger, RegTypeString);
        client.set(trigger, value, RegParamValue);
        return client.commit(trigger);
    }

    TessaroClient client;
};

} // namespace

/// An apply from the request to the service's end.
class ApplyServiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hookGivesTheResult_data() {
        QTest::addColumn<QString>("hook");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<QByteArray>("result");
        QTest::addColumn<QString>("applied");
        QTest::addColumn<int>("mode");
        const auto row = [](const char *name, const char *hook, const QByteArray &script, const char *result,
                            const QString &applied = section, int mode = 0700) {
            QTest::newRow(name) << QString::fromUtf8(hook) << script << QByteArray(result) << applied << mode;
        };
        const QByteArray sh = "#!/bin/sh\n";
        row("default", "another", sh + "exit 3", "4");
        row("failure", "display", sh + "exit 3", "3");
        row("crash", "display", sh + "kill -SEGV $$", "signal 11");
        row("time limit with a process of the hook's own", "display", sh + "sleep 100 & wait", "timeout");
        row("no interpreter", "display", "#!/nonexistent/shell\n", "cannot be executed: No such file or directory");
        row("name that leads upwards", "display", sh + "exit 3", "4", QStringLiteral("root/view/.."));
        row("no run bit", "display", sh + "exit 3", "4", section, 0600);
        row("arguments, no input, prints to standard error", "display",
            sh + "[ \"$1 $2\" = '" + (section + QLatin1Char(' ') + trigger).toUtf8() +
                "' ] && ! read line && [ /proc/$$/fd/1 -ef /proc/$$/fd/2 ]",
            "0");
    }

    void hookGivesTheResult() {
        QFETCH(const QString, hook);
        QFETCH(const QByteArray, script);
        QFETCH(const QByteArray, result);
        QFETCH(const QString, applied);
        QFETCH(const int, mode);
        ApplyingDevice device;
        device.addHook(QStringLiteral("default"), "exit 4");
        const QString file = device.write(QStringLiteral("hooks/") + hook, script);
        chmod(QFile::encodeName(file).constData(), static_cast<mode_t>(mode));
        {
            QSystemSemaphore semaphore(trigger, 0, QSystemSemaphore::Create);
            QCOMPARE(device.makeTrigger(applied), 0);
            QCOMPARE(device.client.requestApply(applied, trigger), 0);
            QCOMPARE(waitpid(-1, nullptr, WNOHANG), pid_t(-1)); // the service is no child of this process
            QVERIFY(semaphore.acquire());
        }
        QCOMPARE(device.get(trigger), result);
        QVERIFY(!device.processes().isEmpty());
        device.client.del(trigger);
        QCOMPARE(device.client.commit(trigger), 0);
        QCOMPARE(device.leftovers(), QStringList());
    }

    void serviceCleansUpAfterAKilledTool() {
        ApplyingDevice device;
        QSystemSemaphore semaphore(trigger, 0, QSystemSemaphore::Create);
        device.makeTrigger(section);
        QCOMPARE(device.client.requestApply(section, trigger), 0);
        QVERIFY(semaphore.acquire());
        QCOMPARE(device.get(trigger), QByteArray("0")); // without a hook
        QCOMPARE(device.leftovers(), QStringList());
    }

    void requestIsRefused() {
        ApplyingDevice device;
        device.client.create(trigger, RegTypeString);
        device.client.set(trigger, section, RegParamValue);
        QCOMPARE(device.client.requestApply(section, trigger), 5); // it is only pending
        device.makeTrigger(QStringLiteral("root/view/power"));
        QCOMPARE(device.client.requestApply(section, trigger), 5);
        device.makeTrigger(section);
        for (const char *const service : {"/nonexistent/tessaro-apply", "/etc/passwd"}) {
            qputenv("TESSARO_APPLY_SERVICE", service);
            QCOMPARE(device.client.requestApply(section, trigger), 5);
            QCOMPARE(waitpid(-1, nullptr, WNOHANG), pid_t(-1));
        }
    }
};

QTEST_GUILESS_MAIN(ApplyServiceTest)

#include "applyservicetest.moc"
