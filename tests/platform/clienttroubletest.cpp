/// Registries that are missing, damaged, read-only, locked or left by a killed process.
#include "testregistry.h"

#include <SQLiteCpp/Database.h>

#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <csignal>
#include <future>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString key = QStringLiteral("root/key");
const QString twin = QStringLiteral("root/twin");
constexpr uid_t nobody = 65534;

int set(TessaroClient &client, const QString &path, const QString &value) {
    return client.set(path, value, RegParamValue);
}

int commitValue(TessaroClient &client, const QString &value) {
    set(client, key, value);
    set(client, twin, value);
    return client.commit(QStringLiteral("root"));
}

/// Tells of each commit by a byte.
[[noreturn]] void commitForEver(int progress) {
    TessaroClient client;
    for (int i = 0; commitValue(client, QString::number(i)) == 0 && write(progress, "c", 1) == 1; ++i) {
    }
    _exit(1);
}

} // namespace

class ClientTroubleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void unusableRegistryIsAFailure_data();
    void unusableRegistryIsAFailure();
    void truncatedRegistryIsAFailure();
    void readOnlyRegistryIsReadable();
    void failedCommitChangesNothingAndStaysPending();
    void lockIsWaitedFor();
    void writersTakeTurns();
    void killedWriterLeavesItsLastCommit();
};

void ClientTroubleTest::unusableRegistryIsAFailure_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("text") << QByteArray(5000, 'x');
    QTest::newRow("database of another kind") << QByteArray("CREATE TABLE other (name TEXT)");
}

void ClientTroubleTest::unusableRegistryIsAFailure() {
    QFETCH(const QByteArray, content);
    const TestRegistry registry;
    if (content.startsWith("CREATE")) {
        SQLite::Database(registry.path().toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
            .exec(content.toStdString());
    } else if (!content.isNull()) {
        registry.write(QStringLiteral("registry.db"), content);
    }
    const QFileInfo file(registry.path());
    const qint64 sizeBefore = file.exists() ? file.size() : -1;

    TessaroClient client;
    QString value = QStringLiteral("as it was");
    QMap<QString, _RegNodeType> children;
    QCOMPARE(client.Tessaro::get(key, value, RegParamValue, QString()), 3);
    QCOMPARE(value, QStringLiteral("as it was"));
    QCOMPARE(client.get(key, children, RegParamValue, QString()), 3);
    QCOMPARE(children.size(), 0);
    QCOMPARE(client.contains(key), 3);
    QCOMPARE(client.create(key, RegTypeString), 3);
    QCOMPARE(set(client, key, value), 3);
    QCOMPARE(client.del(key), 3);
    QCOMPARE(client.commit(key), 4);
    QCOMPARE(client.requestApply(QStringLiteral("root"), key), 3);
    const QFileInfo after(registry.path());
    QCOMPARE(after.exists() ? after.size() : -1, sizeBefore);
}

void ClientTroubleTest::truncatedRegistryIsAFailure() {
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {"key": ")" + QByteArray(20000, 'x') + R"("}})").err, QByteArray());
    TessaroClient reader;
    QCOMPARE(reader.contains(key), 0);
    QFile file(registry.path());
    for (const qint64 size : {20000, 8191, 4097, 4096, 4095, 100, 1}) {
        QVERIFY(file.resize(size));
        TessaroClient client;
        QCOMPARE(client.contains(key), 3);
        QCOMPARE(set(client, key, QString()), 3);
    }
    QVERIFY(file.resize(0));
    QCOMPARE(reader.contains(key), 3);
}

void ClientTroubleTest::readOnlyRegistryIsReadable() {
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {"key": "text"}})").err, QByteArray());
    const QByteArray folder = QFile::encodeName(registry.folder());
    QCOMPARE(chmod(QFile::encodeName(registry.path()).constData(), 0444), 0);
    QCOMPARE(chmod(folder.constData(), 0555), 0);
    const uid_t self = geteuid();
    const auto restored = qScopeGuard([&] {
        std::ignore = seteuid(self);
        chmod(folder.constData(), 0700);
    });
    if (self == 0) {
        QCOMPARE(seteuid(nobody), 0); // root may write everywhere
    }
    if (!QFileInfo(registry.path()).isReadable()) {
        QSKIP("the temporary directory is this user's only");
    }
    TessaroClient client;
    QCOMPARE(valueOf(client, key), QStringLiteral("text"));
    QCOMPARE(commitValue(client, QStringLiteral("new")), 4);
    QCOMPARE(valueOf(client, key), QStringLiteral("new"));
    QCOMPARE(client.rollback(QString()), 0);
    QCOMPARE(valueOf(client, key), QStringLiteral("text"));
}

void ClientTroubleTest::failedCommitChangesNothingAndStaysPending() {
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {"key": "text"}})").err, QByteArray());
    TessaroClient client;
    TessaroClient reader;
    const QString large(1 << 20, QLatin1Char('x'));
    {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const auto restored = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &before); });
        const rlimit fullDisk{100000, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &fullDisk), 0);
        QCOMPARE(commitValue(client, large), 4);
    }
    QCOMPARE(valueOf(reader, key), QStringLiteral("text"));
    QCOMPARE(reader.contains(twin), 1);
    QCOMPARE(valueOf(client, twin), large);
    QCOMPARE(client.commit(QStringLiteral("root")), 0);
    QCOMPARE(valueOf(reader, key), large);
}

void ClientTroubleTest::lockIsWaitedFor() {
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {}})").err, QByteArray());
    SQLite::Database database(registry.path().toStdString(), SQLite::OPEN_READWRITE);
    database.exec("BEGIN EXCLUSIVE");
    std::atomic<bool> isHeld{true};
    const auto released = std::async(std::launch::async, [&] {
        QThread::msleep(300);
        isHeld = false;
        database.exec("ROLLBACK");
    });
    TessaroClient client;
    QCOMPARE(commitValue(client, QStringLiteral("v")), 0);
    QVERIFY(!isHeld);
}

void ClientTroubleTest::writersTakeTurns() {
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {}})").err, QByteArray());
    const auto writer = [](int name) {
        int failures = 0;
        TessaroClient client;
        for (int i = 0; i < 20; ++i) {
            const QString path = QStringLiteral("root/%1/%2").arg(name).arg(i);
            failures += client.create(path, RegTypeString) != 0;
            failures += set(client, path, QStringLiteral("v")) != 0;
            failures += client.commit(path) != 0;
        }
        return failures;
    };
    auto first = std::async(std::launch::async, writer, 1);
    QCOMPARE(writer(2), 0);
    QCOMPARE(first.get(), 0);
    TessaroClient reader;
    for (const QString &name : {QStringLiteral("root/1"), QStringLiteral("root/2")}) {
        QMap<QString, _RegNodeType> children;
        QCOMPARE(reader.get(name, children, RegParamValue, QString()), 0);
        QCOMPARE(children.size(), 20);
    }
}

void ClientTroubleTest::killedWriterLeavesItsLastCommit() {
    const TestRegistry registry;
    for (int round = 0; round < 10; ++round) {
        QCOMPARE(registry.load(R"({"root": {"key": "none", "twin": "none"}})").err, QByteArray());
        int progress[2];
        QCOMPARE(pipe(progress), 0);
        const pid_t writer = fork();
        if (writer == 0) {
            commitForEver(progress[1]);
        }
        close(progress[1]);
        char commit = 0;
        QCOMPARE(read(progress[0], &commit, 1), ssize_t(1));
        QThread::usleep(static_cast<unsigned long>(round) * 997); // another point of a commit in each round
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        close(progress[0]);
        TessaroClient after;
        QCOMPARE(valueOf(after, key), valueOf(after, twin));
        QCOMPARE(commitValue(after, QStringLiteral("v")), 0);
    }
}

QTEST_GUILESS_MAIN(ClientTroubleTest)
#include "clienttroubletest.moc"
