#include "registry/viewkey.h"
#include "commands/error.h"
#include "registry/vocabulary.h"

#include <QtTest/QTest>

class ViewKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameAndParentPartAtTheLastSlash_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("parent");

        QTest::newRow("the view") << "root/lumo-config-view"
                                  << "lumo-config-view"
                                  << "root";
        QTest::newRow("one component") << "root"
                                       << "root" << QString();
        QTest::newRow("a slash at the end") << "root/"
                                            << ""
                                            << "root";
        QTest::newRow("a slash at the front") << "/root"
                                              << "root"
                                              << "";
        QTest::newRow("nothing") << QString() << QString() << QString();
    }

    void nameAndParentPartAtTheLastSlash() {
        QFETCH(QString, path);
        QFETCH(QString, parent);
        QTEST(ViewKey(path).name(), "name");
        QCOMPARE(ViewKey(path).parent(), ViewKey(parent));
        QCOMPARE(ViewKey(path).parent().isNull(), parent.isNull());
    }

    void componentsSkipEmptyParts() {
        QCOMPARE(ViewKey("root//a/").components(), (QStringList{QStringLiteral("root"), QStringLiteral("a")}));
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

    void positionsInTheListsAreTheEnumerators() {
        QCOMPARE(regNodeTypes.indexOf(QStringLiteral("default")), 3);
        QCOMPARE(regEntryParams.indexOf(QStringLiteral("regexp")), 2);
        QCOMPARE(regEntryTypes.indexOf(QStringLiteral("bool")), 8);
        QCOMPARE(changeStates.size(), 4);
        QCOMPARE(trueWords.size(), falseWords.size());
    }

    void messageKeepsPercentSignsOfThePath() {
        const TessaroError error(QStringLiteral("root/a%2b"), -1);
        QCOMPARE(static_cast<const Error &>(error).message(),
                 QStringLiteral("error occured on view key: root/a%2b, status: -1"));
    }
};

QTEST_APPLESS_MAIN(ViewKeyTest)

#include "viewkeytest.moc"
