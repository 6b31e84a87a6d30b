#include "commands/postaction.h"

#include <QtTest/QTest>

class PostActionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLineAsksForACommand_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("withDisplay");
        QTest::addColumn<QString>("withoutDisplay");
        QTest::addColumn<QString>("withNoReboot"); // and with a display

        QTest::newRow("reboot") << "reboot:now:shutdown -r"
                                << "shutdown -r"
                                << "reboot"
                                << "";
        QTest::newRow("reboot alone") << "reboot"
                                      << "reboot"
                                      << "reboot"
                                      << "";
        QTest::newRow("logout") << "logout:bye"
                                << "bye"
                                << ""
                                << "bye";
        QTest::newRow("restart-display") << "restart-display:x"
                                         << "x"
                                         << ""
                                         << "x";
        QTest::newRow("restart-desktop") << "restart-desktop:x"
                                         << "x"
                                         << ""
                                         << "x";
        QTest::newRow("no command") << "restart-display:"
                                    << ""
                                    << ""
                                    << "";
        QTest::newRow("another kind") << "other:ignored:run this"
                                      << "run this"
                                      << "run this"
                                      << "run this";
        QTest::newRow("another case") << "Reboot:x"
                                      << "x"
                                      << "x"
                                      << "x";
        QTest::newRow("a command alone") << "run"
                                         << "run"
                                         << "run"
                                         << "run";
        QTest::newRow("nothing") << ""
                                 << ""
                                 << ""
                                 << "";
    }

    void aLineAsksForACommand() {
        QFETCH(QString, line);
        QTEST(postActionCommand(line, false, true), "withDisplay");
        QTEST(postActionCommand(line, false, false), "withoutDisplay");
        QTEST(postActionCommand(line, true, true), "withNoReboot");
    }
};

QTEST_APPLESS_MAIN(PostActionTest)

#include "postactiontest.moc"
