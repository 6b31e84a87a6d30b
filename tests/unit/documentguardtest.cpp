#include "engine/documentguard.h"
#include "commands/changedsections.h"
#include "commands/error.h"
#include "engine/charreferences.h"

#include <QtTest/QTest>

namespace {

/// The text of @p line once for each number, "%1" in it replaced by the number.
QByteArray repeated(const char *line, int count) {
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += QByteArray(line).replace("%1", QByteArray::number(i));
    return text;
}

QByteArray nested(int levels) {
    return repeated("<a>\n", levels) + repeated("</a>", levels);
}

QString refusal(const QByteArray &document) {
    try {
        checkDocument(document);
    } catch (const Error &error) {
        return error.message();
    }
    return {};
}

} // namespace

class DocumentGuardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void documentsBeyondALimitAreRefused_data() {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("message");

        const QString deep = QStringLiteral("nested deeper than 256 elements at line 257");
        const QString names = QStringLiteral("too many different names at line ");
        QTest::newRow("256 levels are fine") << nested(256) << QString();
        QTest::newRow("257 are not") << nested(257) << deep;
        QTest::newRow("a hundred thousand are seen in time") << repeated("<a>\n", 100000) << deep;
        QTest::newRow("3,000 names are fine") << "<a>" + repeated("<n%1/>", 3000) + "</a>" << QString();
        QTest::newRow("5,000 elements") << "<a>\n" + repeated("<n%1/>", 5000) + "</a>" << names + QLatin1Char('2');
        QTest::newRow("5,000 attributes") << "<a>" + repeated("<n x%1=''/>", 5000) + "</a>" << names + QLatin1Char('1');
        QTest::newRow("5,000 instructions") << "<a>" + repeated("<?p%1 ?>", 5000) + "</a>" << names + QLatin1Char('1');
        QTest::newRow("600 prefixes") << "<a>" + repeated("<n xmlns:p%1='u'/>", 600) + "</a>"
                                      << names + QLatin1Char('1');
        QTest::newRow("600 namespaces") << "<a>" + repeated("<n xmlns='u%1'/>", 600) + "</a>"
                                        << names + QLatin1Char('1');
        QTest::newRow("what cannot be read is left to the load") << QByteArray("<a><b></a>") << QString();
    }

    void documentsBeyondALimitAreRefused() {
        QFETCH(QByteArray, document);
        QTEST(refusal(document), "message");
    }

    void namesOfTheDocumentAndTheSettingsTogetherAreRefused() {
        const auto named = [](const char *line) {
            const QByteArray text = "<lumo_config><a>" + repeated(line, 2500) + "</a></lumo_config>";
            return NamedDocument{text, checkDocument(text)};
        };
        changedSections(named("<n%1/>"), named("<n%1/>")); // the same names, counted once
        QVERIFY_EXCEPTION_THROWN(changedSections(named("<n%1/>"), named("<m%1/>")), Error);
    }

    void referencesAboveSixteenBitsAreFound_data() {
        QTest::addColumn<QString>("document");
        QTest::addColumn<int>("line");

        QTest::newRow("hexadecimal") << "<a>\n&#x1F600;</a>" << 2;
        QTest::newRow("decimal") << "<a>&#128512;</a>" << 1;
        QTest::newRow("with zeros in front") << "<a>&#x0001F600;</a>" << 1;
        QTest::newRow("far beyond what a number holds") << "<a>&#99999999999999999999;</a>" << 1;
        QTest::newRow("in an attribute") << "<a\n\nb='&#x10000;'/>" << 3;
        QTest::newRow("the last one that fits") << "<a>&#xFFFF;&#65535;</a>" << 0;
        QTest::newRow("the character itself") << QString::fromUtf8("<a>😀</a>") << 0;
        QTest::newRow("in a comment, a section, an instruction")
            << "<a><!-- &#x1F600; --><![CDATA[&#x1F600;]]><?p &#x1F600;?></a>" << 0;
        QTest::newRow("after a comment") << "<a><!-- &#x1F600; -->&#x1F600;</a>" << 1;
        QTest::newRow("in an entity") << "<!DOCTYPE a [<!ENTITY e '&#x1F600;'>]>\n<a>&e;</a>" << 1;
        QTest::newRow("behind markup that an entity pretends")
            << "<!DOCTYPE a [<!ENTITY e '<!--'>]>\n<a>&#x1F600;<!----></a>" << 2;
    }

    void referencesAboveSixteenBitsAreFound() {
        QFETCH(QString, document);
        QTEST(lineOfUnsupportedReference(document), "line");
    }
};

QTEST_GUILESS_MAIN(DocumentGuardTest)

#include "documentguardtest.moc"
