// SPDX-License-Identifier: MIT
#include "support/device.h"
#include <tessaroclient.h>

#include <QtTest/QtTest>

#include <csignal>
#include <sys/resource.h>

namespace {

const QString key = QStringLiteral("root/key");
const QString twin = QStringLiteral("root/twin");

QString valueOf(TessaroClient &client, const QString &path) {
    QString value;
    client.Tessaro::get(path, value, RegParamValue, QString());
    return value;
}

} // namespace

/// Registries that are missing, damaged, exchanged, turned to another mode or full.
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

    void registryWithAWriteAheadLogIsFollowed_data() {
        QTest::addColumn<bool>("isSwitchedWhileOpen");
        QTest::newRow("from the start") << false;
        QTest::newRow("switched while clients are open") << true;
    }

    void registryWithAWriteAheadLogIsFollowed() {
        QFETCH(const bool, isSwitchedWhileOpen);
        TessaroClient writer;
        TessaroClient reader;
        if (isSwitchedWhileOpen) {
            QCOMPARE(valueOf(reader, key), before);
            QCOMPARE(valueOf(writer, key), before);
        }
        QCOMPARE(device.run("sqlite3 $TESSARO_REGISTRY 'PRAGMA journal_mode = WAL'").out, QByteArray("wal\n"));
        for (const QString &text : {QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third")}) {
            QCOMPARE(writer.set(key, text, RegParamValue), 0);
            QCOMPARE(writer.commit(key), 0);
            QCOMPARE(valueOf(writer, key), text);
            QCOMPARE(valueOf(reader, key), text);
            QCOMPARE(reader.set(twin, text, RegParamValue), 0);
            QCOMPARE(reader.commit(twin), 0);
            QCOMPARE(valueOf(writer, twin), text);
        }
    }

    void fullDiskChangesNothingAndLeavesAllPending() {
        TessaroClient client;
        TessaroClient reader;
        const QString large(1 << 20, QLatin1Char('y'));
        client.set(key, QStringLiteral("new"), RegParamValue);
        client.set(twin, large, RegParamValue);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit fullDisk{100000, usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &fullDisk);
        const int status = client.commit(QStringLiteral("root"));
        setrlimit(RLIMIT_FSIZE, &usual);
        QCOMPARE(status, 4);
        QCOMPARE(valueOf(reader, key), before);
        QCOMPARE(valueOf(client, twin), large);
        QCOMPARE(client.commit(QStringLiteral("root")), 0);
        QCOMPARE(valueOf(reader, key), QStringLiteral("new"));
    }
};

QTEST_GUILESS_MAIN(ClientTroubleTest)

#include "clienttroubletest.moc"
