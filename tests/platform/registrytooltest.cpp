#include "support/device.h"
#include "support/stories.h"

#include <QtTest/QtTest>

#include <cstdlib>
#include <sys/wait.h>

namespace {

QByteArray printed(const QStringList &lines) {
    QByteArray text;
    for (const QString &line : lines)
        text += line.toUtf8() + '\n';
    return text;
}

} // namespace

/// The registry's command-line tool: tessaro.txt.
class RegistryToolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aCallHasItsResult_data() {
        QTest::addColumn<Story>("story");
        for (const Story &story : storiesOf(QStringLiteral(STORIES "/tessaro.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story;
    }

    void aCallHasItsResult() {
        QFETCH(const Story, story);
        const QString registry = QStringLiteral(STORIES "/tessaro.json");
        const Device device(registry);
        device.write(QStringLiteral("tmp/t.json"), printed(story.lines("file")));
        device.write(QStringLiteral("call"), printed(story.lines("call")));
        for (const char *const name : {"TESSARO", "TESSARO_REGISTRY", "TMPDIR"})
            qputenv(name, device.environment[name]);
        const int status = std::system("cd \"$TMPDIR\" && sh ../call > ../out 2> ../err"); // NOLINT(cert-env33-c)
        QCOMPARE(device.read(QStringLiteral("err")), printed(story.lines("err")));
        QCOMPARE(device.read(QStringLiteral("out")), printed(story.lines("out")));
        QCOMPARE(WEXITSTATUS(status), story.text("status").toInt());
        const QByteArray after = printed(story.lines("after"));
        QCOMPARE(device.dump(), after.isEmpty() ? contentsOf(registry) : after);
    }
};

QTEST_GUILESS_MAIN(RegistryToolTest)

#include "registrytooltest.moc"
