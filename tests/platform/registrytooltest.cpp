/// The registry's command-line tool.
#include "testregistry.h"

#include <QtCore/QScopeGuard>
#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace {

const char *const tree = R"({
    "root": {
        "a": "1",
        "b": {
            "c": "2"
        }
    },
    "templates": {
        "sessions": {
            "{UUID}": {
                "name": "new",
                "size": "big"
            }
        }
    }
}
)";

int modeOf(const QString &path) {
    struct stat found {};
    return stat(QFile::encodeName(path).constData(), &found) == 0 ? static_cast<int>(found.st_mode & 0777) : -1;
}

} // namespace

class RegistryToolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }
    void loadMakesAPrivateRegistry();
    void dumpAndLoadAreInverse_data();
    void dumpAndLoadAreInverse();
    void unfitTreeChangesNothing_data();
    void unfitTreeChangesNothing();
    void unfitTreeMakesNoRegistry();
    void call_data();
    void call();
    void argumentThatIsNotUtf8IsRefused();
};

void RegistryToolTest::loadMakesAPrivateRegistry() {
    const TestRegistry registry;
    const QString folder = registry.file(QStringLiteral("new/folder"));
    qputenv("TESSARO_REGISTRY", QFile::encodeName(folder + QStringLiteral("/r.db")));
    QCOMPARE(registry.load(tree).err, QByteArray());
    QCOMPARE(modeOf(folder), 0700);
    QCOMPARE(modeOf(folder + QStringLiteral("/r.db")), 0600);
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList(QStringLiteral("r.db")));
}

void RegistryToolTest::dumpAndLoadAreInverse_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("some of everything") << QByteArray(tree);
    const auto row = [](const char *name, const QByteArray &member) {
        QTest::newRow(name) << QByteArray("{\n    \"root\": {\n        " + member + "\n    }\n}\n");
    };
    row("empty text and directory", "\"a\": \"\",\n        \"b\": {\n        }");
    row("marks at the start", "\"\uFEFFa\": \"\uFEFF\uFEFFb é\"");
    row("escapes", R"("a": "\" \\ \u0000 \n : {")");
    row("beyond the first plane", "\"\U0001F600\": \"\U0001F600\"");
}

void RegistryToolTest::dumpAndLoadAreInverse() {
    QFETCH(const QByteArray, json);
    const TestRegistry registry;
    QCOMPARE(registry.load(R"({"root": {"gone": "x"}, "tmp": {}})").err, QByteArray());
    QCOMPARE(registry.load(json).err, QByteArray());
    QCOMPARE(registry.tessaro({QStringLiteral("dump")}).out, json);
}

void RegistryToolTest::unfitTreeChangesNothing_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const QByteArray &json, const QByteArray &message) {
        QTest::newRow(json.left(40).constData()) << json << "tessaro: " + message + '\n';
    };
    row("{", "unterminated object at byte 1");
    row("{\"root\": {\"a\": \"\xFF\"}}", "invalid UTF8 string at byte 16");
    row(R"({"root": {}} x)", "garbage at the end of the document at byte 13");
    row(R"({"root": {"a": 1}})", "\"root/a\" is neither an object nor a string");
    row(R"({"root": {"a": null}})", "\"root/a\" is neither an object nor a string");
    row(R"({"root": {"a": ["x"]}})", "\"root/a\" is neither an object nor a string");
    row(R"({"root": {"b": {"": "x"}}})", "unfit name \"\" in \"root/b\"");
    row(R"({"root": {"a/b": {}}})", "unfit name \"a/b\" in \"root\"");
    row(R"({"root": {"a": "\uD800"}})", "the text of \"root/a\" is not Unicode");
    row(R"({"root": {"a": "x:y\":", "b": {}, "a": "2"}})", "an object has two members of one name");
    row(R"({"tmp": {}})", "no \"root\"");
    row(R"(["root"])", "no \"root\"");
    row(R"({"root": "x"})", "\"root\" is no object");
    row(R"({"root": {}, "more": {}})", "unknown name \"more\" at the top");
    row("{\"root\":" + QByteArray("{\"a\":").repeated(2000) + "\"\"" + QByteArray(2001, '}'),
        "too deeply nested document at byte 5124");
}

void RegistryToolTest::unfitTreeChangesNothing() {
    QFETCH(const QByteArray, json);
    QFETCH(const QByteArray, message);
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    const Outcome outcome = registry.load(json);
    QCOMPARE(outcome.err, message);
    QCOMPARE(outcome.status, 1);
    QCOMPARE(registry.tessaro({QStringLiteral("dump")}).out, QByteArray(tree));
}

void RegistryToolTest::unfitTreeMakesNoRegistry() {
    const TestRegistry registry;
    QCOMPARE(registry.load("{}").status, 1);
    QVERIFY(!QFile::exists(registry.path()));
}

void RegistryToolTest::call_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("output"); // of the command, or what `tessaro get` of its path prints after it
    const auto row = [](const char *command, int status, const char *output) {
        QTest::newRow(command) << QString::fromUtf8(command) << status << QByteArray(output);
    };
    row("get root/a", 0, "1\n");
    row("get root/b", 1, "tessaro: \"root/b\": a directory, or no path\n");
    row("get root/none", 1, "tessaro: \"root/none\": there is no such key\n");
    row("dump root/b", 0, "{\n    \"c\": \"2\"\n}\n");
    row("dump root/a", 1, "tessaro: \"root/a\": there is no such directory\n");
    row("dump root/none", 1, "tessaro: \"root/none\": there is no such directory\n");
    row("set root/a 5", 0, "5\n");
    row("set root/b/new/er 6", 0, "6\n");
    row("set root/a \uFEFFé", 0, "\uFEFFé\n");
    row("set root/a/b 1", 1, "tessaro: \"root/a/b\": there is no such key\n");
    row("set root/b 1", 1, "tessaro: \"root/b\": a directory, or no path\n");
    row("set root//b 1", 1, "tessaro: \"root//b\": a directory, or no path\n");
    row("load nothing", 1, "tessaro: cannot open \"nothing\": No such file or directory\n");
    const char *const usage = "usage: tessaro load FILE.json\nusage: tessaro dump [PATH]\nusage: tessaro get PATH\n"
                              "usage: tessaro set PATH VALUE\n";
    row("get", 1, usage);
    row("frobnicate root", 1, usage);
}

void RegistryToolTest::call() {
    QFETCH(const QString, command);
    QFETCH(const int, status);
    QFETCH(const QByteArray, output);
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    const QStringList words = command.split(QLatin1Char(' '));
    const Outcome outcome = registry.tessaro(words);
    QCOMPARE(outcome.out + outcome.err +
                 (status == 0 && words[0] == QLatin1String("set")
                      ? registry.tessaro({QStringLiteral("get"), words[1]}).out
                      : QByteArray()),
             output);
    QCOMPARE(outcome.status, status);

    QFile::remove(registry.path());
    QCOMPARE(registry.tessaro(words).status, 1);
    QVERIFY(!QFile::exists(registry.path()));
}

void RegistryToolTest::argumentThatIsNotUtf8IsRefused() {
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    const auto restored = qScopeGuard([this] { initTestCase(); });
    const Outcome outcome = registry.tessaro({QStringLiteral("set"), QStringLiteral("root/a"), QStringLiteral("é")});
    QCOMPARE(outcome.err, QByteArray("tessaro: \"\uFFFD\" is not UTF-8\n"));
    QCOMPARE(outcome.status, 1);
}

QTEST_GUILESS_MAIN(RegistryToolTest)
#include "registrytooltest.moc"
