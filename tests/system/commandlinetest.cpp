#include "support/device.h"
#include "support/stories.h"

#include <QtTest/QtTest>

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        files.reset(new QTemporaryDir);
        QDir::setCurrent(files->path());
    }

    void cleanup() { QDir::setCurrent(before); }

    void commandLineIsCarriedOutOrRefused_data() {
        QTest::addColumn<Story>("story");
        for (const Story &story : storiesOf(QStringLiteral(DATA "/commandlines.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story;
    }

    void commandLineIsCarriedOutOrRefused() {
        QFETCH(const Story, story);
        QString printed = story.text("printed");
        const QStringList exported = story.lines("exported");
        const Outcome outcome = device.tool(story.name.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        QCOMPARE(outcome.out, QByteArray());
        if (!printed.isEmpty())
            printed.replace(QLatin1String("USAGE"), usage).append(QLatin1Char('\n'));
        QCOMPARE(QString::fromUtf8(outcome.err), printed);
        QCOMPARE(outcome.status, printed.isEmpty() ? 0 : 1);
        QCOMPARE(QDir().entryList(QDir::Files), exported);
        QVERIFY(exported.isEmpty() || contentsOf(exported.first()).endsWith("</lumo_config>\n"));
    }

    void unreadableRegistryIsReportedWithItsStatus_data() {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("missing") << false;
        QTest::newRow("corrupt") << true;
    }

    void unreadableRegistryIsReportedWithItsStatus() {
        QFETCH(const bool, isThere);
        const Device broken;
        const QString registry = broken.write(QStringLiteral("registry.db"), QByteArray(4096, 'x'));
        if (!isThere)
            QFile::remove(registry);
        const QString old = broken.write(QStringLiteral("old"), "an older document");
        const QString wanted = broken.write(QStringLiteral("new"), "<lumo_config/>");

        for (const Outcome &outcome : {broken.exportTo(old), broken.importFrom(wanted)}) {
            QCOMPARE(outcome.err, QByteArray("error: error occured on view key: root/lumo-config-view, status: 3\n"));
            QCOMPARE(outcome.out, QByteArray());
            QCOMPARE(outcome.status, 1);
        }
        QCOMPARE(contentsOf(old), QByteArray());
    }

private:
    const QString usage =
        QStringLiteral("Quendar system settings interpreter.\n"
                       "usage: quendarsettings -settings <filepath> -[set|get] <category> [-noreboot]\n"
                       "           -get all\n"
                       "           -set all");
    const QString before = QDir::currentPath();
    const Device device;
    QScopedPointer<QTemporaryDir> files;
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "commandlinetest.moc"
