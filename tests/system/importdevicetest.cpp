#include "support/device.h"

#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace {

const QString view = QStringLiteral("root/lumo-config-view/");
const QString small = QStringLiteral(DATA "/small.json");
const QString changed = QStringLiteral(DATA "/small-changed.xml");

} // namespace

class ImportDeviceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QFile::remove(QStringLiteral("/tmp/last-apply-command")); }

    void unchangedExportChangesAndAppliesNothing() {
        const Device device;
        device.addHook(QStringLiteral("default"), "touch \"${0%/*}/../applied\"");
        const QByteArray before = device.dump();
        const QString file = device.path(QStringLiteral("f.xml"));
        device.exportTo(file);
        QVERIFY(succeeds(device.importFrom(file)));
        QCOMPARE(device.dump(), before);
        QVERIFY(!QFile::exists(device.path(QStringLiteral("applied"))));
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
    }

    void editedDocumentChangesAndAppliesWhatItSays() {
        const Device device;
        device.addHook(QStringLiteral("default"), "echo \"$1 $(\"$TESSARO\" get \"$2\")\" >> \"${0%/*}/../applied\"");
        const QString file = QStringLiteral(EXAMPLES "/new-configuration.xml");
        QVERIFY(succeeds(device.importFrom(file)));

        QByteArray applied;
        for (const QByteArray section : {"display", "network_printer", "rdp", "ssh", "time_zone"})
            applied += QByteArray("root/lumo-config-view/@ root/lumo-config-view/@\n").replace("@", section);
        QCOMPARE(device.read(QStringLiteral("applied")), applied);
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());

        device.exportTo(device.path(QStringLiteral("f.xml")));
        QByteArray wanted = contentsOf(file);
        const int comment = wanted.indexOf("<!--");
        wanted.remove(comment, wanted.indexOf("-->\n") + 4 - comment);
        QCOMPARE(device.read(QStringLiteral("f.xml")), wanted);
    }

    void newEntriesHaveTheirTemplatesAndDroppedOnesAreGone() {
        const Device device(small);
        device.set(QStringLiteral("templates/lumo-config-view/ssh/sessions/{UUID}/theme"), QStringLiteral("dark"));
        QVERIFY(succeeds(device.importFrom(changed)));
        QCOMPARE(device.get(view + QStringLiteral("ssh/sessions/{44444444-4444-4444-8444-444444444444}/theme")),
                 QByteArray("dark"));
        QCOMPARE(device.get(view + QStringLiteral("network_printer/printers/"
                                                  "{33333333-3333-4333-8333-333333333333}/port")),
                 QByteArray("515"));
        const QByteArray dump = device.dump();
        QVERIFY(!dump.contains("{11111111") && !dump.contains("{22222222"));
    }

    void documentsAreReadAsTheirEncodingAndMarkupSay_data() {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("value");
        const auto document = [](const QByteArray &volume) {
            return "<?xml version=\"1.0\"?>\n<lumo_config>\n<audio>\n<volume>" + volume +
                   "</volume>\n</audio>\n</lumo_config>\n";
        };
        const QString face = QString::fromUtf8("\U0001F600");
        const QString utf16 = QString::fromUtf8(document(face.toUtf8()));
        QTest::newRow("CR LF") << document("a\nb").replace("\n", "\r\n") << QStringLiteral("a\nb");
        QTest::newRow("CR") << document("a\nb").replace("\n", "\r") << QStringLiteral("a\nb");
        QTest::newRow("UTF-16") << QByteArray(QTextCodec::codecForName("UTF-16")->fromUnicode(utf16)) << face;
        QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + document("5") << QStringLiteral("5");
        QTest::newRow("ISO-8859-1") << document("\xe9").replace("?>", " encoding=\"ISO-8859-1\"?>")
                                    << QStringLiteral("\u00e9");
        QTest::newRow("a character above U+FFFF") << document(face.toUtf8()) << face;
        QTest::newRow("references") << document("&lt;&#233;&#xe9;&amp;") << QStringLiteral("<\u00e9\u00e9&");
        QTest::newRow("no reference in a comment") << document("<!-- &#x1F600; -->5") << QStringLiteral("5");
        QTest::newRow("no reference in a CDATA section")
            << document("<![CDATA[&#x1F600;]]>") << QStringLiteral("&#x1F600;");
        QTest::newRow("white space around") << document("\n\t 5 \n") << QStringLiteral("5");
        QTest::newRow("white space alone") << document(" \n ") << QString();
    }

    void documentsAreReadAsTheirEncodingAndMarkupSay() {
        QFETCH(const QByteArray, document);
        QFETCH(const QString, value);
        const Device device(small);
        QVERIFY(succeeds(device.importFrom(device.write(QStringLiteral("f.xml"), document))));
        QCOMPARE(QString::fromUtf8(device.get(view + QStringLiteral("audio/volume"))), value);
    }

    void failedAppliesAreNamedOnceEach_data() {
        QTest::addColumn<QByteArray>("service");
        QTest::addColumn<QByteArray>("hook");
        QTest::addColumn<QByteArray>("failed");
        QTest::newRow("refused") << QByteArray("/nonexistent/service") << QByteArray("true")
                                 << QByteArray("audio, network_printer, ssh");
        QTest::newRow("failed") << QByteArray() << QByteArray("exit 3") << QByteArray("audio, network_printer, ssh");
        QTest::newRow("one of them") << QByteArray() << QByteArray("[ \"${1##*/}\" != audio ]") << QByteArray("audio");
        QTest::newRow("registry vanished with the first")
            << QByteArray() << QByteArray("rm -f \"$TESSARO_REGISTRY\"") << QByteArray("audio, network_printer, ssh");
    }

    void failedAppliesAreNamedOnceEach() {
        QFETCH(const QByteArray, service);
        QFETCH(const QByteArray, hook);
        QFETCH(const QByteArray, failed);
        Device device(small);
        device.addHook(QStringLiteral("default"), hook);
        device.environment.insert("TESSARO_APPLY_LINGER", "5");
        if (!service.isEmpty())
            device.environment.insert("TESSARO_APPLY_SERVICE", service);
        // the section that comes twice is applied twice
        const QByteArray twice = contentsOf(changed).replace("</lumo_config>", "<audio/></lumo_config>");
        const Outcome outcome = device.importFrom(device.write(QStringLiteral("f.xml"), twice));
        QVERIFY2(outcome.err.endsWith("error: impossible to apply: " + failed + '\n'), outcome.err.constData());
        QCOMPARE(outcome.status, 1);

        const bool hasVanished = !QFile::exists(device.path(QStringLiteral("registry.db")));
        if (hasVanished)
            device.load(contentsOf(small));
        QCOMPARE(device.get(view + QStringLiteral("audio/volume")), QByteArray(hasVanished ? "70" : "40"));
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
    }

    void readOnlyRegistryIsReportedAndNothingIsApplied() {
        const Device device(small);
        device.addHook(QStringLiteral("default"), "touch \"${0%/*}/../tmp/applied\"");
        const QByteArray before = device.dump();
        ::chmod(QFile::encodeName(device.path(QString())).constData(), 0755);
        ::chmod(QFile::encodeName(device.path(QStringLiteral("tmp"))).constData(), 01777);
        ::chmod(QFile::encodeName(device.path(QStringLiteral("registry.db"))).constData(), 0444);
        Outcome outcome;
        if (!asOrdinaryUser(QStringLiteral(TOOL_PROGRAM), [&] { outcome = device.importFrom(changed); }))
            QSKIP("the tool lies where no other user can run it");
        QVERIFY2(outcome.err.endsWith("error: error occured on view key: root/lumo-config-view, status: 4\n"),
                 outcome.err.constData());
        QCOMPARE(outcome.status, 1);
        QCOMPARE(device.dump(), before);
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
    }

    void twoImportsAtOnceEndWithOneOfThem() {
        const Device device;
        const auto document = [](const QByteArray &value) {
            QByteArray text = "<lumo_config>";
            for (int section = 0; section < 20; ++section)
                text += QByteArray("<s@><k>").replace("@", QByteArray::number(section)) + value +
                        QByteArray("</k></s@>").replace("@", QByteArray::number(section));
            return text + "</lumo_config>";
        };
        QByteArrayList sections;
        for (int section = 0; section < 20; ++section)
            sections.append("\"s" + QByteArray::number(section) + "\": {\"k\": \"old\"}");
        device.load("{\"root\": {\"lumo-config-view\": {" + sections.join(',') + "}}, \"tmp\": {\"applying\": {}}}");

        const auto import = [&](const QByteArray &value) {
            const QString file = device.write(QString::fromUtf8(value), document(value));
            return device.startTool({QStringLiteral("-set"), QStringLiteral("all"), QStringLiteral("-settings"), file});
        };
        Program one = import("one");
        Program two = import("two");
        for (int time = 0; time < 5; ++time) {
            device.exportTo(device.path(QStringLiteral("meanwhile.xml")));
            QXmlStreamReader reader(device.read(QStringLiteral("meanwhile.xml")));
            while (!reader.atEnd())
                reader.readNext();
            QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
        }
        QCOMPARE(one.wait().status, 0);
        QCOMPARE(two.wait().status, 0);
        const QByteArray last = device.get(view + QStringLiteral("s0/k"));
        QVERIFY(last == "one" || last == "two");
        QCOMPARE(device.dump(QStringLiteral("root")).count(last), 20);
        QCOMPARE(device.leftovers().join(QLatin1Char(' ')), QString());
    }

private:
    static bool succeeds(const Outcome &outcome) {
        return QTest::qCompare(outcome.out + outcome.err, QByteArray(), "output", "nothing", __FILE__, __LINE__) &&
               QTest::qCompare(outcome.status, 0, "status", "0", __FILE__, __LINE__);
    }
};

QTEST_GUILESS_MAIN(ImportDeviceTest)
#include "importdevicetest.moc"
