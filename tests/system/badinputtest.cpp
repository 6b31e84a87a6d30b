#include "support/device.h"
#include "support/stories.h"

#include <QtTest/QtTest>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

const QByteArray notLoaded = "error: An error occured while detecting sections to apply\n";
const QByteArray deep = "error: nested deeper than 256 elements at line ";
const QByteArray names = "error: too many different names";

/// A document whose one section holds what is given.
QByteArray audio(const QByteArray &content) {
    return "<lumo_config>\n<audio>" + content + "</audio>\n</lumo_config>\n";
}

/// @p pattern again and again, each "@" in it a number of its own.
QByteArray numbered(const QByteArray &pattern, int count) {
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += QByteArray(pattern).replace("@", QByteArray::number(i));
    return text;
}

QByteArray billionLaughs() {
    QByteArray type = "<!DOCTYPE lumo_config [<!ENTITY l0 'ha'>";
    for (int level = 1; level < 30; ++level)
        type += "<!ENTITY l" + QByteArray::number(level) + " '" +
                QByteArray("&l@;").replace("@", QByteArray::number(level - 1)).repeated(10) + "'>";
    return type + "]>" + audio("<volume>&l29;</volume>");
}

QString expanded(const Story &story, const char *part) {
    return story.text(part)
        .replace(QLatin1String("LOAD"), QString::fromUtf8(notLoaded.trimmed()))
        .replace(QLatin1String("VIEW"), QStringLiteral("root/lumo-config-view"))
        .replace(QLatin1String("ID"), QStringLiteral("{55555555-5555-4555-8555-555555555555}"));
}

} // namespace

class BadInputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { before = device.dump(); }

    void cleanupTestCase() {
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
        struct rusage usage = {};
        ::getrusage(RUSAGE_CHILDREN, &usage);
        QVERIFY2(usage.ru_maxrss < 1024 * 1024, "a run took more than 1 GiB");
    }

    void badDocumentIsRefusedOrWarnedOf_data() {
        QTest::addColumn<Story>("story");
        for (const Story &story : storiesOf(QStringLiteral(DATA "/badinput.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story;
    }

    void badDocumentIsRefusedOrWarnedOf() {
        QFETCH(const Story, story);
        const QString made = expanded(story, "made");
        const Outcome outcome =
            device.importFrom(device.write(QStringLiteral("f.xml"), expanded(story, "document").toUtf8()));
        QVERIFY2(outcome.err.endsWith(expanded(story, "printed").toUtf8() + '\n'), outcome.err.constData());
        QCOMPARE(outcome.out, QByteArray());
        QCOMPARE(outcome.status, story.lines("status").isEmpty() ? 1 : 0);

        QCOMPARE(device.dump() == before, made.isEmpty());
        if (!made.isEmpty()) {
            QCOMPARE(device.dump(made).simplified(), QByteArray("{ }"));
            QCOMPARE(device.get(QStringLiteral("root/lumo-config-view/audio/volume")), QByteArray("70"));
            device.load(contentsOf(small));
        }
    }

    void generatedDocumentIsRefused_data() {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QByteArray>("message"); // the last line; the engine's own may precede it
        const struct {
            const char *name;
            QByteArray document, message;
        } rows[] = {
            {"bad UTF-8", audio("<volume>\xff\xfe</volume>"), notLoaded},
            {"overlong UTF-8", audio("<volume>\xc0\xbc</volume>"), notLoaded},
            {"NUL", audio(QByteArray("<volume>5\0</volume>", 19)), notLoaded},
            {"control character", audio("<volume>\x01</volume>"), notLoaded},
            {"billion laughs", billionLaughs(), notLoaded},
            {"a million nested elements", QByteArray("<a>").repeated(1000000), deep + "1\n"},
            {"257 nested elements", "<lumo_config>\n" + QByteArray("<a>").repeated(256), deep + "2\n"},
            {"many names", audio(numbered("<n@/>", 5000)), names + " at line 2\n"},
            {"many attribute names", audio("<a " + numbered("n@='' ", 5000) + "/>"), names + " at line 2\n"},
            {"many instructions", audio(numbered("<?n@ ?>", 5000)), names + " at line 2\n"},
            {"many prefixes", audio(numbered("<p@:a xmlns:p@='u'/>", 600)), names + " at line 2\n"},
            {"many namespaces", audio(numbered("<a xmlns='u@'/>", 600)), names + " at line 2\n"},
        };
        for (const auto &row : rows)
            QTest::newRow(row.name) << row.document << row.message;
    }

    void generatedDocumentIsRefused() {
        QFETCH(const QByteArray, document);
        QFETCH(const QByteArray, message);
        const Outcome outcome = device.importFrom(device.write(QStringLiteral("f.xml"), document));
        QVERIFY2(outcome.err.endsWith(message), outcome.err.right(1000).constData());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(device.dump(), before);
    }

    void namesOfDocumentAndRegistryAddUp() {
        const Device other(small);
        other.load("{\"root\": {\"lumo-config-view\": {\"a\": {" + numbered("\"a@\": \"\",", 2500) + "\"z\": \"\"}}}}");
        const QByteArray all = other.dump();
        const QByteArray document = "<lumo_config><a>" + numbered("<b@/>", 2500) + "</a></lumo_config>";
        const Outcome outcome = other.importFrom(other.write(QStringLiteral("f.xml"), document));
        QCOMPARE(outcome.err, names + '\n');
        QCOMPARE(outcome.status, 1);
        QCOMPARE(other.dump(), all);
    }

    void externalEntityIsNeverRead_data() {
        QTest::addColumn<QByteArray>("declaration");
        QTest::newRow("general") << QByteArray("<!ENTITY e SYSTEM 'file://@'>");
        QTest::newRow("parameter") << QByteArray("<!ENTITY % p SYSTEM 'file://@'> %p;");
    }

    void externalEntityIsNeverRead() {
        QFETCH(QByteArray, declaration);
        const QString secret = device.write(QStringLiteral("secret"), "<!ENTITY e 'the secret'>");
        const QByteArray type = "<!DOCTYPE lumo_config [" + declaration.replace("@", QFile::encodeName(secret)) + "]>";
        const Outcome outcome =
            device.importFrom(device.write(QStringLiteral("f.xml"), type + audio("<volume>&e;</volume>")));
        QVERIFY2(!outcome.err.contains("the secret"), outcome.err.constData());
        QVERIFY(!device.dump().contains("the secret"));
        device.load(contentsOf(small));
    }

    void largeFileIsRefusedBySize() {
        const QString path = device.write(QStringLiteral("large.xml"), {});
        QVERIFY(QFile::resize(path, 100 * 1024 * 1024));
        const Outcome outcome = device.importFrom(path);
        QCOMPARE(outcome.err, QByteArray("error: document larger than 16 MiB\n"));
        QCOMPARE(outcome.status, 1);
    }

    void onlyRegularFilesAreOpened_data() {
        QTest::addColumn<QString>("path");
        const QString pipe = device.path(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QTest::newRow("a pipe without a writer") << pipe;
        QTest::newRow("a folder") << device.path(QStringLiteral("hooks"));
        QTest::newRow("a device") << QStringLiteral("/dev/zero");
    }

    void onlyRegularFilesAreOpened() {
        QFETCH(const QString, path);
        const Outcome outcome = device.importFrom(path);
        QCOMPARE(outcome.err, "error: impossible to open file: " + QFile::encodeName(path) + '\n');
        QCOMPARE(outcome.status, 1);
    }

private:
    const QString small = QStringLiteral(DATA "/small.json");
    const Device device{small};
    QByteArray before;
};

QTEST_GUILESS_MAIN(BadInputTest)
#include "badinputtest.moc"
