#include "support/device.h"

#include <QtTest/QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray registryOf(const QByteArray &view) {
    return "{\"root\": {\"lumo-config-view\": {" + view + "}}}";
}

/// A section of settings with names of their own, and how the document shows it.
QByteArray distinctNames(int count, const QByteArray &before, const QByteArray &after, const QByteArray &separator) {
    QByteArrayList settings;
    for (int i = 0; i < count; ++i) {
        const QByteArray name = 'n' + QByteArray::number(i).rightJustified(6, '0');
        settings.append(QByteArray(before).replace('@', name) + "x" + QByteArray(after).replace('@', name));
    }
    return settings.join(separator);
}

mode_t modeOf(const QString &path) {
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class ExportDeviceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void exampleDeviceBecomesTheGoldenDocumentEachTime() {
        const Device example;
        const QByteArray golden = contentsOf(QStringLiteral(EXAMPLES "/device.xml"));
        QVERIFY(!golden.isEmpty());
        for (int time = 0; time < 2; ++time) {
            const Outcome outcome = example.exportTo(example.path(QStringLiteral("f.xml")));
            QCOMPARE(outcome.out + outcome.err, QByteArray());
            QCOMPARE(outcome.status, 0);
            QCOMPARE(example.read(QStringLiteral("f.xml")), golden);
        }
    }

    void newFileIsPrivateAndAnOldOneKeepsItsMode() {
        const QString file = device.path(QStringLiteral("new.xml"));
        const mode_t mask = ::umask(0);
        QCOMPARE(device.exportTo(file).status, 0);
        ::umask(mask);
        QCOMPARE(modeOf(file), mode_t(0600));

        const QString old = device.write(QStringLiteral("old.xml"), QByteArray(100000, 'x'));
        QCOMPARE(::chmod(QFile::encodeName(old).constData(), 0664), 0);
        QCOMPARE(device.exportTo(old).status, 0);
        QCOMPARE(modeOf(old), mode_t(0664));
        QCOMPARE(contentsOf(old), contentsOf(file));
    }

    void fullDiskIsReported() {
        const Outcome outcome = device.exportTo(QStringLiteral("/dev/full"));
        QCOMPARE(outcome.err, QByteArray("error: impossible to write file: /dev/full\n"));
        QCOMPARE(outcome.status, 1);
    }

    void pipeWithAReaderTakesTheDocument() {
        const QByteArray path = QFile::encodeName(device.path(QStringLiteral("pipe")));
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        QFile reader;
        QVERIFY(reader.open(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), QIODevice::ReadOnly,
                            QFileDevice::AutoCloseHandle));
        device.load(registryOf("\"audio\": {\"volume\": \"70\"}")); // less than a pipe holds
        QCOMPARE(device.exportTo(QFile::decodeName(path)).status, 0);
        QVERIFY(reader.readAll().endsWith("</lumo_config>\n"));
    }

    void namesAreRightOrRefused_data() {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("3000") << QByteArray();
        for (const char *const count : {"3900", "10000", "50000"})
            QTest::newRow(count) << QByteArray("error: too many different names\n");
    }

    void namesAreRightOrRefused() {
        QFETCH(const QByteArray, message);
        const int count = QByteArray(QTest::currentDataTag()).toInt();
        device.load(registryOf("\"section\": {" + distinctNames(count, "\"@\": \"", "\"", ",") + '}'));
        const Outcome outcome = device.exportTo(device.path(QStringLiteral("names.xml")));
        QCOMPARE(outcome.err, message);
        QCOMPARE(outcome.status, message.isEmpty() ? 0 : 1);
        const QByteArray expected = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<lumo_config version=\"1.1\" "
                                    "creator_version=\"1.0\" creator=\"quendartc-quendarsettings\">\n    <section>\n" +
                                    distinctNames(count, "        <@>", "</@>\n", "") +
                                    "    </section>\n</lumo_config>\n";
        QCOMPARE(device.read(QStringLiteral("names.xml")), message.isEmpty() ? expected : QByteArray());
    }

    void nestingHasALimit_data() {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("256") << QByteArray();
        QTest::newRow("257") << QByteArray("error: nested deeper than 256 elements\n");
    }

    void nestingHasALimit() {
        QFETCH(const QByteArray, message);
        const int levels = QByteArray(QTest::currentDataTag()).toInt();
        device.load(registryOf(QByteArray("\"d\": {").repeated(levels - 2) + "\"k\": \"deep\"" +
                               QByteArray("}").repeated(levels - 2)));
        const Outcome outcome = device.exportTo(device.path(QStringLiteral("deep.xml")));
        QCOMPARE(outcome.err, message);
        QCOMPARE(device.read(QStringLiteral("deep.xml")).contains("<k>deep</k>"), message.isEmpty());
    }

    void whatIsNoXmlEndsTheExport_data() {
        QTest::addColumn<QByteArray>("view");
        QTest::newRow("a name with a blank") << QByteArray(R"("audio": {"main volume": "70"})");
        QTest::newRow("a name of digits") << QByteArray(R"("audio": {"1": "70"})");
        QTest::newRow("a control character") << QByteArray(R"("audio": {"volume": "7\u00010"})");
    }

    void whatIsNoXmlEndsTheExport() {
        QFETCH(const QByteArray, view);
        device.load(registryOf(view));
        const Outcome outcome = device.exportTo(device.path(QStringLiteral("none.xml")));
        QVERIFY2(outcome.err.endsWith("error: impossible to export the settings\n"), outcome.err.constData());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(device.read(QStringLiteral("none.xml")), QByteArray());
    }

private:
    const Device device;
};

QTEST_GUILESS_MAIN(ExportDeviceTest)
#include "exportdevicetest.moc"
