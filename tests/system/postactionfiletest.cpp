#include "support/device.h"
#include "support/stories.h"

#include <QtTest/QtTest>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString path = QStringLiteral("/tmp/last-apply-command");
const QByteArray unsafe = "post-action ignored, unsafe file: \"/tmp/last-apply-command\" \n";

} // namespace

/// What stands at the post-action file's name, before an import and after the applies: postaction.txt.
class PostActionFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::umask(S_IRWXG | S_IRWXO); }

    void init() { QVERIFY2(clear(), "the post-action file cannot be removed"); }
    void cleanup() { clear(); }

    void postActionIsRunOrNot_data() {
        QTest::addColumn<Story>("story");
        for (const Story &story : storiesOf(QStringLiteral(DATA "/postaction.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story;
    }

    void postActionIsRunOrNot() {
        QFETCH(const Story, story);
        const QByteArray before = story.text("before").toUtf8();
        const QByteArray hook = story.text("hook").toUtf8();
        const QByteArray run = story.text("run").toUtf8();
        if (::geteuid() != 0 && (before + hook).contains("chown"))
            QSKIP("only root can give a file away");
        Device device(small);
        if (story.lines("display").isEmpty())
            device.environment.insert("DISPLAY", "");
        device.environment.insert("REBOOT_LOG", QFile::encodeName(device.path(QStringLiteral("log"))));
        device.addHook(QStringLiteral("audio"), definitions(device) + hook);
        QCOMPARE(std::system((definitions(device) + before).constData()), 0);

        const Outcome outcome =
            device.importFrom(device.write(QStringLiteral("f.xml"), document), story.lines("option"));
        QCOMPARE(outcome.err, story.lines("warning").isEmpty() ? QByteArray() : unsafe);
        QCOMPARE(outcome.status, 0);
        if (QFileInfo(path).isDir())
            clear(); // the tool removes no folder
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
        QVERIFY(waitUntil([&] { return device.read(QStringLiteral("log")).trimmed() == run; }));
        QVERIFY(!before.contains("unharmed") || device.read(QStringLiteral("victim")) == "unharmed\n");
    }

    void fileThatTheUserCannotReplaceIsNotTrusted() {
        if (::geteuid() != 0)
            QSKIP("only root can leave such a file");
        const Device device(small);
        const QString file = device.write(QStringLiteral("f.xml"), document);
        const QByteArray given = definitions(device) + "echo \"$L\" >$F; chmod 644 $F; cd " +
                                 QFile::encodeName(device.path(QString())) + "; chown 65534 . tmp registry.db f.xml";
        QCOMPARE(std::system(given.constData()), 0);

        Outcome outcome;
        if (!asOrdinaryUser(QStringLiteral(TOOL_PROGRAM), [&] { outcome = device.importFrom(file); }))
            QSKIP("the tool lies where no other user can run it");
        QCOMPARE(outcome.err, unsafe);
        QCOMPARE(outcome.status, 0);
        QVERIFY(QFile::exists(path));
        clear();
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
        QVERIFY(!QFile::exists(device.path(QStringLiteral("log"))));
    }

private:
    static bool clear() {
        const QByteArray name = QFile::encodeName(path);
        ::unlink(name.constData());
        ::rmdir(name.constData());
        struct stat status = {};
        return ::lstat(name.constData(), &status) != 0;
    }

    /// The variables that a story's commands use.
    static QByteArray definitions(const Device &device) {
        const QByteArray action = "printf run >>" + QFile::encodeName(device.path(QStringLiteral("log"))) + '\n';
        return "F=" + QFile::encodeName(path) + " V=" + QFile::encodeName(device.path(QStringLiteral("victim"))) +
               " L='tell:ignored:sh " + QFile::encodeName(device.write(QStringLiteral("action"), action)) + "'\n";
    }

    const QString small = QStringLiteral(DATA "/small.json");
    const QByteArray document = "<lumo_config><audio><volume>99</volume></audio></lumo_config>";
};

QTEST_GUILESS_MAIN(PostActionFileTest)
#include "postactionfiletest.moc"
