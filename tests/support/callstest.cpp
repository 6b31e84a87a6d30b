// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "support/stories.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <sys/resource.h>

/// What is typed on a device, and what comes of it. The parts of a story are described at the head of each file.
class CallsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() {
        struct rusage usage = {};
        ::getrusage(RUSAGE_CHILDREN, &usage);
        QVERIFY2(usage.ru_maxrss < 1024 * 1024, "a program took more than 1 GiB");
    }

    void init() { removePostAction(); }
    void cleanup() { removePostAction(); }

    void aCallHasItsResult_data() {
        addStories(QStringLiteral(CALLS), "needs registry file hook setup call out err status left changes log");
    }

    void aCallHasItsResult() {
        QFETCH(const Story, story);
        Device device(QStringLiteral(DATA "/small.json"));
        device.environment.insert("DATA", DATA);
        device.environment.insert("EXAMPLES", EXAMPLES);
        for (const char *const log : {"LOG", "REBOOT_LOG"})
            device.environment.insert(log, QFile::encodeName(device.path(QStringLiteral("log"))));
        static const QRegularExpression killing(QStringLiteral("\\b(kill|timeout)\\b"));
        if (killing.match(story.text("setup") + story.text("call") + story.text("hook")).hasMatch())
            device.environment = withoutLeakCheck(device.environment);
        if (device.run(story.file("needs")).status != 0)
            QSKIP("it is not possible here");
        if (!story.lines("registry").isEmpty())
            device.load(story.file("registry"));
        if (!story.lines("file").isEmpty())
            device.write(QStringLiteral("home/f"), story.text("file").toUtf8());
        const QString hook = device.write(QStringLiteral("hooks/default"), "#!/bin/sh\n" + story.file("hook"));
        QFile::setPermissions(hook, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(device.run(story.file("setup")).err, QByteArray());
        device.write(QStringLiteral("before"), linesOf(device));

        const Outcome outcome = device.run(story.file("call"));
        QCOMPARE(outcome.err, story.file("err"));
        QCOMPARE(outcome.out, story.file("out"));
        QCOMPARE(outcome.status, story.text("status").toInt());
        QCOMPARE(device.leftovers(), story.lines("left"));
        device.write(QStringLiteral("after"), linesOf(device));
        QCOMPARE(changes(device).join(QLatin1Char('\n')), story.text("changes"));
        QCOMPARE(device.read(QStringLiteral("log")), story.file("log"));
    }

private:
    /// A dump without commas, which come and go with the lines that follow.
    static QByteArray linesOf(const Device &device) { return device.dump().replace(",\n", "\n"); }

    static QStringList changes(const Device &device) {
        return QString::fromUtf8(device.run("diff ../before ../after").out)
            .split(QLatin1Char('\n'))
            .filter(QRegularExpression(QStringLiteral("^[<>]")))
            .replaceInStrings(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" "));
    }

    /// A file, or an empty folder.
    static void removePostAction() {
        const QString path = QStringLiteral("/tmp/last-apply-command");
        QFile::remove(path);
        QDir().rmdir(path);
    }
};

QTEST_GUILESS_MAIN(CallsTest)
#include "callstest.moc"
