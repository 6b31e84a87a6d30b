/// An apply from the request to the service's end, with the real service.
#include "testregistry.h"

#include <QtCore/QDir>
#include <QtCore/QSystemSemaphore>
#include <QtTest/QtTest>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString section = QStringLiteral("root/view/display");
const QString trigger = QStringLiteral("tmp/applying/{0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}");

/// A device with a folder of hooks, on which one section is applied.
class Device {
public:
    Device() {
        const QByteArray folder = QFile::encodeName(registry.folder());
        qputenv("TMPDIR", folder); // where the semaphore's file lies
        qputenv("TESSARO_APPLY_DIR", folder);
        qputenv("TESSARO_APPLY_SERVICE",
                QFile::encodeName(startable(QStringLiteral(APPLY_PROGRAM), registry.folder())));
        qputenv("TESSARO_APPLY_TIMEOUT", "60");
        qputenv("TESSARO_APPLY_LINGER", "1"); // which is 5
        qputenv("FOLDER", folder);
        if (registry.load(R"({"root": {}})").status != 0) {
            qFatal("no registry");
        }
    }
    ~Device() {
        waitUntil([this] { return !isServiceThere(); });
        qunsetenv("TMPDIR");
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

    /// A hook that first says who the service is.
    void addHook(const QString &name, const QByteArray &script, mode_t mode = 0755) const {
        const QString file = registry.write(
            name, script.startsWith("#!") ? script : "#!/bin/sh\necho $PPID > $FOLDER/service\n" + script + '\n');
        chmod(QFile::encodeName(file).constData(), mode);
    }

    QByteArray contents(const QString &name) const {
        QFile file(registry.file(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void makeTrigger(const QString &what) {
        client.create(trigger, RegTypeString);
        client.set(trigger, what, RegParamValue);
        client.commit(trigger);
    }

    QString applied(const QString &what) {
        QSystemSemaphore semaphore(trigger, 0, QSystemSemaphore::Create);
        makeTrigger(what);
        const int status = client.requestApply(what, trigger);
        if (status != 0) {
            return QStringLiteral("refused: %1").arg(status);
        }
        semaphore.acquire();
        const QString result = valueOf(client, trigger);
        client.del(trigger);
        client.commit(trigger);
        return result;
    }

    bool isServiceThere() const {
        QFile command(QStringLiteral("/proc/%1/cmdline").arg(contents(QStringLiteral("service")).trimmed().toInt()));
        return command.open(QIODevice::ReadOnly) && !command.readAll().isEmpty();
    }

    bool isSemaphoreThere() const {
        return !QDir(registry.folder()).entryList({QStringLiteral("qipc_systemsem_*")}).isEmpty();
    }

    TestRegistry registry;
    TessaroClient client;
};

} // namespace

class ApplyServiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hookGivesTheResult_data();
    void hookGivesTheResult();
    void hookGetsItsArgumentsAndNoInput();
    void timeLimitEndsTheWholeGroup();
    void serviceLeavesNothingBehind();
    void serviceCleansUpAfterAKilledTool();
    void lostRegistryDoesNotHoldTheTool();
    void requestIsRefused_data();
    void requestIsRefused();
};

void ApplyServiceTest::hookGivesTheResult_data() {
    QTest::addColumn<QString>("hook");
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("applied");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const char *hook, const QByteArray &script, int mode, const char *result,
                        const QString &applied = section) {
        QTest::newRow(name) << QString::fromUtf8(hook) << script << mode << applied << QString::fromUtf8(result);
    };
    row("no hook", "another", "exit 3", 0755, "0");
    row("success", "display", "exit 0", 0755, "0");
    row("failure", "display", "exit 3", 0755, "3");
    row("crash", "display", "kill -SEGV $$", 0755, "signal 11");
    row("no run bit", "display", "exit 3", 0644, "0");
    row("no interpreter", "display", "#!/nonexistent/shell\n", 0755, "cannot be executed: No such file or directory");
    row("default", "default", "exit 4", 0755, "4");
    row("name that leads upwards", "display", "exit 3", 0755, "0", QStringLiteral("root/view/.."));
}

void ApplyServiceTest::hookGivesTheResult() {
    QFETCH(const QString, hook);
    QFETCH(const QByteArray, script);
    QFETCH(const int, mode);
    QFETCH(const QString, applied);
    QFETCH(const QString, result);
    Device device;
    device.addHook(hook, script, static_cast<mode_t>(mode));
    QCOMPARE(device.applied(applied), result);
    QCOMPARE(device.client.contains(trigger), 1);
}

void ApplyServiceTest::hookGetsItsArgumentsAndNoInput() {
    Device device;
    device.addHook(QStringLiteral("default"), "exit 3");
    device.addHook(QStringLiteral("display"), "echo \"$1 $2\"; cat");
    device.makeTrigger(section);
    Program service(QStringLiteral(APPLY_PROGRAM), {section, trigger});
    QVERIFY(waitUntil([&] { return valueOf(device.client, trigger) == QLatin1String("0"); }));
    device.client.del(trigger);
    device.client.commit(trigger);
    const Outcome outcome = service.wait();
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.err, (section + QLatin1Char(' ') + trigger + QLatin1Char('\n')).toUtf8());
    QCOMPARE(outcome.status, 0);
}

void ApplyServiceTest::timeLimitEndsTheWholeGroup() {
    Device device;
    qputenv("TESSARO_APPLY_TIMEOUT", "3");
    const QByteArray pipe = QFile::encodeName(device.registry.file(QStringLiteral("pipe")));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    const int reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    device.addHook(QStringLiteral("display"), "(echo begun; sleep 100) > $FOLDER/pipe & wait");
    QCOMPARE(device.applied(section), QStringLiteral("timeout"));
    char text[16];
    QCOMPARE(read(reader, text, sizeof text), ssize_t(6));
    QVERIFY(waitUntil([&] { return read(reader, text, sizeof text) == 0; })); // nobody is left who could write
    close(reader);
}

void ApplyServiceTest::serviceLeavesNothingBehind() {
    Device device;
    device.addHook(QStringLiteral("display"), "true");
    QCOMPARE(device.applied(section), QStringLiteral("0"));
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), pid_t(-1)); // no child, running or ended
    QCOMPARE(errno, ECHILD);
    QVERIFY(waitUntil([&] { return !device.isServiceThere(); }));
    QVERIFY(!device.isSemaphoreThere());
}

void ApplyServiceTest::serviceCleansUpAfterAKilledTool() {
    Device device;
    device.addHook(QStringLiteral("display"), "true");
    QSystemSemaphore semaphore(trigger, 0, QSystemSemaphore::Create);
    device.makeTrigger(section);
    QCOMPARE(device.client.requestApply(section, trigger), 0);
    QVERIFY(semaphore.acquire());
    QVERIFY(device.isServiceThere());
    QVERIFY(device.isSemaphoreThere());
    QVERIFY(waitUntil([&] { return !device.isServiceThere(); }));
    QCOMPARE(device.client.contains(trigger), 1);
    QVERIFY(!device.isSemaphoreThere());
}

void ApplyServiceTest::lostRegistryDoesNotHoldTheTool() {
    Device device;
    device.addHook(QStringLiteral("display"), "rm $FOLDER/registry.db");
    QCOMPARE(device.applied(section), section);
}

void ApplyServiceTest::requestIsRefused_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("committed");
    QTest::addColumn<QByteArray>("service");
    QTest::newRow("another section's trigger")
        << QStringLiteral("root/view/power") << true << QByteArray(APPLY_PROGRAM);
    QTest::newRow("a trigger that is only pending") << section << false << QByteArray(APPLY_PROGRAM);
    QTest::newRow("no service") << section << true << QByteArray("/nonexistent/tessaro-apply");
    QTest::newRow("a service that cannot be executed") << section << true << QByteArray("/etc/passwd");
}

void ApplyServiceTest::requestIsRefused() {
    QFETCH(const QString, value);
    QFETCH(const bool, committed);
    QFETCH(const QByteArray, service);
    Device device;
    qputenv("TESSARO_APPLY_SERVICE", service);
    QCOMPARE(device.client.requestApply(section, trigger), 5);
    device.client.create(trigger, RegTypeString);
    device.client.set(trigger, value, RegParamValue);
    if (committed) {
        QCOMPARE(device.client.commit(trigger), 0);
    }
    QCOMPARE(device.client.requestApply(section, trigger), 5);
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), pid_t(-1));
}

QTEST_GUILESS_MAIN(ApplyServiceTest)
#include "applyservicetest.moc"
