#include "engine/charreferences.h"

#include <QtTest/QTest>

class CharReferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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

QTEST_APPLESS_MAIN(CharReferencesTest)

#include "charreferencestest.moc"
