// SPDX-License-Identifier: MIT
#include "registry/viewkey.h"
#include "registry/vocabulary.h"
#include "report/error.h"

#include <QtTest/QTest>

using namespace quendar;

class ViewKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameAndParentPartAtTheLastSlash() {
        QCOMPARE(ViewKey("root/view").name(), QStringLiteral("view"));
        QCOMPARE(ViewKey("root/view").parent(), ViewKey("root"));
        QCOMPARE(ViewKey("root").name(), QStringLiteral("root"));
        QVERIFY(ViewKey("root").parent().isNull());
        QCOMPARE(ViewKey("root/").name(), QString());
        QCOMPARE(ViewKey("/root").parent(), ViewKey(""));
        QVERIFY(!ViewKey("/root").parent().isNull());
        QCOMPARE(ViewKey("root//a/").components().join(QLatin1Char(' ')), QStringLiteral("root a"));
    }

    void coversItselfAndWhatIsBelow_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isCovered");
        QTest::addColumn<QString>("relative");

        QTest::newRow("below") << "root/view/printers" << true << "/printers";
        QTest::newRow("itself") << "root/view" << true << "";
        QTest::newRow("a sibling with those letters") << "root/viewer" << false << "root/viewer";
        QTest::newRow("elsewhere") << "root" << false << "root";
    }

    void coversItselfAndWhatIsBelow() {
        QFETCH(QString, path);
        QTEST(ViewKey("root/view").covers(path), "isCovered");
        QTEST(static_cast<QString>(ViewKey(path).makeRelativeTo(QStringLiteral("root/view"))), "relative");
    }

    void theEmptyKeyCoversNothingButItself() {
        QVERIFY(ViewKey("").covers(QString()));
        QVERIFY(!ViewKey("").covers(QStringLiteral("root")));
    }

    void positionsInTheListsAreTheEnumerators() {
        QCOMPARE(regNodeTypes.indexOf(QStringLiteral("default")), 3);
        QCOMPARE(regEntryParams.indexOf(QStringLiteral("regexp")), 2);
        QCOMPARE(regEntryTypes.indexOf(QStringLiteral("bool")), 8);
        QCOMPARE(changeStates.size(), 4);
        QCOMPARE(trueWords.size(), falseWords.size());
    }

    void messageKeepsPercentSignsOfThePath() {
        QCOMPARE(TessaroError(QStringLiteral("root/a%2b"), -1).message(),
                 QStringLiteral("error occured on view key: root/a%2b, status: -1"));
    }
};

QTEST_APPLESS_MAIN(ViewKeyTest)

#include "viewkeytest.moc"
