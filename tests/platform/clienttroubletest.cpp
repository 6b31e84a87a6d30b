#include "registry/tessaroclient.h"
#include "support/device.h"

#include <SQLiteCpp/Database.h>

#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <csignal>
#include <future>
#include <list>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString key = QStringLiteral("root/key");
const QString twin = QStringLiteral("root/twin");

QString valueOf(TessaroClient &client, const QString &path) {
    QString value;
    client.Tessaro::get(path, value, RegParamValue, QString());
    return value;
}

int commitBoth(TessaroClient &client, const QString &value) {
    client.set(key, value, RegParamValue);
    client.set(twin, value, RegParamValue);
    return client.commit(QStringLiteral("root"));
}

} // namespace

/// Registries that are missing, damaged, read-only, full, locked or left by a killed process.
class ClientTroubleTest : public QObject {
    Q_OBJECT

    const Device device;
    const QString registry = device.path(QStringLiteral("registry.db"));
    const QString before = QString(20000, QLatin1Char('x'));

private Q_SLOTS:
    void initTestCase() {
        qputenv("TESSARO_REGISTRY", device.environment["TESSARO_REGISTRY"]);
        init();
    }

    void init() {
        QFile::remove(registry);
        device.load(R"({"root": {"key": ")" + before.toUtf8() + R"(", "twin": ""}})");
    }

    void damagedRegistryIsAFailure_data() {
        QTest::addColumn<QByteArray>("content"); // null: there is no file
        const QByteArray whole = contentsOf(registry);
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("text") << QByteArray(5000, 'x');
        QTest::newRow("database of another kind") << QByteArray(whole).replace("node", "none");
        for (const int size : {0, 1, 100, 4095, 4096, 4097, 8191, 20000})
            QTest::addRow("cut to %d bytes", size) << whole.left(size);
    }

    void damagedRegistryIsAFailure() {
        QFETCH(const QByteArray, content);
        QFile::remove(registry);
        if (!content.isNull())
            device.write(QStringLiteral("registry.db"), content);
        TessaroClient client;
        QString value = before;
        QMap<QString, _RegNodeType> children;
        const QVector<int> statuses = {client.Tessaro::get(key, value, RegParamValue, QString()),
                                       client.get(key, children, RegParamValue, QString()),
                                       client.contains(key),
                                       client.create(key, RegTypeString),
                                       client.set(key, value, RegParamValue),
                                       client.del(key),
                                       client.requestApply(key, key)};
        QCOMPARE(statuses, QVector<int>(7, 3));
        QCOMPARE(client.commit(key), 4);
        QCOMPARE(value, before);
        QVERIFY(children.isEmpty());
        QCOMPARE(QFile::exists(registry), !content.isNull());
        QCOMPARE(contentsOf(registry), content);
    }

    void openClientNoticesWhatBecomesOfTheFile() {
        TessaroClient client;
        QCOMPARE(valueOf(client, key), before);
        device.load(R"({"root": {"key": "loaded"}})");
        QCOMPARE(valueOf(client, key), QStringLiteral("loaded"));
        QVERIFY(QFile::resize(registry, 0));
        QCOMPARE(client.contains(key), 3);
    }

    void readOnlyRegistryIsReadable() {
        const QString folder = device.path(QStringLiteral("."));
        chmod(QFile::encodeName(registry).constData(), 0444);
        chmod(QFile::encodeName(folder).constData(), 0555);
        QString value;
        int status = 0;
        const bool isReachable = asOrdinaryUser(folder, [&] {
            TessaroClient client;
            value = valueOf(client, key);
            status = commitBoth(client, QStringLiteral("new"));
        });
        chmod(QFile::encodeName(folder).constData(), 0700);
        if (!isReachable)
            QSKIP("the temporary directory is this user's only");
        QCOMPARE(value, before);
        QCOMPARE(status, 4);
    }

    void fullDiskChangesNothingAndLeavesAllPending() {
        TessaroClient client;
        TessaroClient reader;
        const QString large(1 << 20, QLatin1Char('y'));
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit fullDisk{100000, usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &fullDisk);
        const int status = commitBoth(client, large);
        setrlimit(RLIMIT_FSIZE, &usual);
        QCOMPARE(status, 4);
        QCOMPARE(valueOf(reader, key), before);
        QCOMPARE(valueOf(client, twin), large);
        QCOMPARE(client.commit(QStringLiteral("root")), 0);
        QCOMPARE(valueOf(reader, key), large);
    }

    void lockIsWaitedFor() {
        SQLite::Database locker(registry.toStdString(), SQLite::OPEN_READWRITE);
        locker.exec("BEGIN EXCLUSIVE");
        auto commit = std::async(std::launch::async, [] {
            TessaroClient client;
            return commitBoth(client, QStringLiteral("v"));
        });
        const std::future_status early = commit.wait_for(std::chrono::milliseconds(300));
        locker.exec("ROLLBACK");
        QCOMPARE(commit.get(), 0);
        QCOMPARE(early, std::future_status::timeout);
    }

    void processesTakeTurns() {
        std::list<Program> writers;
        for (int i = 0; i < 10; ++i)
            writers.emplace_back(
                QStringLiteral(TESSARO_PROGRAM),
                QStringList{QStringLiteral("set"), QStringLiteral("root/%1").arg(i), QStringLiteral("v")});
        for (Program &writer : writers)
            QCOMPARE(writer.wait().err, QByteArray());
        QCOMPARE(device.dump().count("\"v\""), 10);
    }

    void killedWriterLeavesItsLastCommit() {
        for (unsigned long round = 0; round < 10; ++round) {
            int progress[2];
            QCOMPARE(pipe(progress), 0);
            const pid_t writer = fork();
            if (writer == 0) {
                TessaroClient client;
                for (int i = 0; commitBoth(client, QString::number(i)) == 0; ++i)
                    std::ignore = write(progress[1], "c", 1);
                _exit(1);
            }
            close(progress[1]);
            char committed = 0;
            const ssize_t count = read(progress[0], &committed, 1);
            QThread::usleep(round * 997); // another point of a commit in each round
            kill(writer, SIGKILL);
            waitpid(writer, nullptr, 0);
            close(progress[0]);
            QCOMPARE(count, 1);
            TessaroClient client;
            QCOMPARE(valueOf(client, key), valueOf(client, twin));
            QCOMPARE(commitBoth(client, QStringLiteral("v")), 0);
        }
    }
};

QTEST_GUILESS_MAIN(ClientTroubleTest)

#include "clienttroubletest.moc"
