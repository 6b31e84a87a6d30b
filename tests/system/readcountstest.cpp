#include "support/device.h"

#include <QtTest/QtTest>

/// What a run asks of the registry's file, counted: it does not grow with the number of settings.
class ReadCountsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
    }

    void eachDirectoryTakesOneStatementOfEachClient_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("clients");
        QTest::newRow("export") << QStringLiteral("-get") << 1;
        QTest::newRow("import of what is there") << QStringLiteral("-set") << 2;
    }

    void eachDirectoryTakesOneStatementOfEachClient() {
        QFETCH(const QString, command);
        QFETCH(const int, clients);
        const int some = statements(command, 4, 2);
        QVERIFY(some > 0);
        QCOMPARE(statements(command, 4, 200), some);
        QCOMPARE(statements(command, 24, 2), some + 20 * clients);
    }

private:
    /// Of one run over a registry of so many sections.
    int statements(const QString &command, int sections, int settingsOfEach) {
        QByteArrayList settings;
        for (int i = 0; i < settingsOfEach; ++i)
            settings.append("\"setting" + QByteArray::number(i) + "\": \"value\"");
        QByteArrayList view;
        for (int i = 0; i < sections; ++i)
            view.append("\"section" + QByteArray::number(i) + "\": {" + settings.join(", ") + '}');
        device.load("{\"root\": {\"lumo-config-view\": {" + view.join(", ") + "}}}");

        const QString document = device.path(QStringLiteral("document.xml"));
        device.exportTo(document);
        const Environment usual = device.environment;
        device.environment.insert("LD_PRELOAD", COUNTING_SQLITE);
        device.environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0");
        device.environment.insert("STATEMENTS", QFile::encodeName(device.path(QStringLiteral("statements"))));
        const Outcome outcome = device.tool({QStringLiteral("-settings"), document, command, QStringLiteral("all")});
        device.environment = usual;
        return outcome.status == 0 ? device.read(QStringLiteral("statements")).toInt() : -1;
    }

    Device device;
};

QTEST_GUILESS_MAIN(ReadCountsTest)
#include "readcountstest.moc"
