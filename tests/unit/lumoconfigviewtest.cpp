// SPDX-License-Identifier: MIT
#include "view/lumoconfigview.h"
#include "support/scriptedregistry.h"

#include <QtCore/QUrl>
#include <QtTest/QTest>
#include <QtXmlPatterns/QXmlNamePool>

using namespace quendar;

namespace {

const QString viewKey = QStringLiteral("root/lumo-config-view");

/// Opens the steps of the engine to the tests, and counts them.
class OpenView : public LumoConfigView {
public:
    using LumoConfigView::FirstChild;
    using LumoConfigView::LumoConfigView;
    using LumoConfigView::NextSibling;
    using LumoConfigView::Parent;
    using LumoConfigView::PreviousSibling;

    QXmlNodeModelIndex nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &node) const override {
        ++steps;
        return LumoConfigView::nextFromSimpleAxis(axis, node);
    }

    /// The names of the nodes from one on along an axis.
    QStringList namesFrom(QXmlNodeModelIndex node, SimpleAxis axis) const {
        QStringList names;
        for (; !node.isNull(); node = nextFromSimpleAxis(axis, node))
            names.append(name(node).localName(namePool()));
        return names;
    }

    QStringList childNames() const { return namesFrom(nextFromSimpleAxis(FirstChild, root({})), NextSibling); }

    mutable int steps = 0; // by the engine or by the view itself
};

} // namespace

/// The nodes where the engine does not go in an export, or not on every device.
class LumoConfigViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        registry = std::make_unique<ScriptedRegistry>();
        view = std::make_unique<OpenView>(pool);
        root = view->indexForKey(viewKey);
    }

    void theRootIsNumberNullAndReadsNothing() {
        QCOMPARE(root.data(), 0);
        QCOMPARE(root.additionalData(), qint64(LumoConfigView::DirectoryElement));
        QCOMPARE(view->root(root), root);
        QCOMPARE(view->documentUri(root), QUrl(QStringLiteral("TODO:///")));
        QCOMPARE(view->compareOrder(root, root), QXmlNodeModelIndex::Precedes);
        QCOMPARE(view->namesFrom(root, OpenView::Parent).join(QLatin1Char(' ')),
                 QStringLiteral("lumo-config-view root"));
        QCOMPARE(registry->calls, QStringList());
    }

    void theTextOfAKeyHasAParentAndNothingElse() {
        addKeys({"volume"});
        const auto element = view->nextFromSimpleAxis(OpenView::FirstChild, root);
        const auto text = view->nextFromSimpleAxis(OpenView::FirstChild, element);
        QCOMPARE(view->kind(text), QXmlNodeModelIndex::Text);
        QCOMPARE(view->stringValue(text), QStringLiteral("text"));
        QCOMPARE(view->nextFromSimpleAxis(OpenView::Parent, text), element);
        for (const auto axis : {OpenView::FirstChild, OpenView::NextSibling, OpenView::PreviousSibling})
            QVERIFY(view->nextFromSimpleAxis(axis, text).isNull());
    }

    void aValueThatIsNotOneIsEmpty() {
        addKeys({"none", "two"});
        registry->keys.clear();
        registry->directories[viewKey + QStringLiteral("/two")] = {{QStringLiteral("1"), RegNodeValue},
                                                                   {QStringLiteral("2"), RegNodeValue}};
        for (auto element = view->nextFromSimpleAxis(OpenView::FirstChild, root); !element.isNull();
             element = view->nextFromSimpleAxis(OpenView::NextSibling, element))
            QCOMPARE(view->stringValue(view->nextFromSimpleAxis(OpenView::FirstChild, element)), QString());
    }

    void siblingsAreGoneThroughBackwards() {
        addKeys({"alpha", "Zeta", "ab", "a_b", "_1"});
        const auto last = view->indexForKey(viewKey + QStringLiteral("/alpha"));
        QCOMPARE(view->namesFrom(last, OpenView::PreviousSibling).join(QLatin1Char(' ')),
                 QStringLiteral("alpha ab a_b _1 Zeta"));
    }

    void aNodeIsTheSameHoweverItIsReached() {
        addKeys({"a", "b", "c"});
        const auto b = view->indexForKey(viewKey + QStringLiteral("/b"));
        const auto a = view->nextFromSimpleAxis(OpenView::FirstChild, root);
        QCOMPARE(view->nextFromSimpleAxis(OpenView::NextSibling, a).data(), b.data());
        const auto c = view->nextFromSimpleAxis(OpenView::NextSibling, b);
        QCOMPARE(view->indexForKey(viewKey + QStringLiteral("/c")).data(), c.data());
        QCOMPARE(view->nextFromSimpleAxis(OpenView::PreviousSibling, b), a);
        QCOMPARE(view->nextFromSimpleAxis(OpenView::FirstChild, root), a);
        for (const auto &node : {a, b, c})
            QCOMPARE(view->nextFromSimpleAxis(OpenView::Parent, node), root);
    }

    void aStepToASiblingLooksUpNothingElse() {
        for (int i = 0; i < 300; ++i)
            addKeys({"k" + QByteArray::number(i)});
        QCOMPARE(view->childNames().size(), 300);
        QCOMPARE(view->steps, 301);
    }

    void anEntryOfAnotherKindEndsTheChildren_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("children");
        QTest::newRow("the first") << "a" << QString();
        QTest::newRow("the second") << "b"
                                    << "a";
    }

    void anEntryOfAnotherKindEndsTheChildren() {
        addKeys({"a", "b", "c"});
        QFETCH(const QString, entry);
        registry->directories[viewKey][viewKey + QLatin1Char('/') + entry] = RegNodeDefault;
        QTEST(view->childNames().join(QLatin1Char(' ')), "children");
    }

    void theTextOfAKeyIsNoChild() {
        const QString path = viewKey + QStringLiteral("/audio");
        registry->directories[path] = {{QStringLiteral("root/other/volume"), RegNodeKey}};
        QVERIFY(view->nextFromSimpleAxis(OpenView::FirstChild, view->indexForKey(path)).isNull());
    }

    void aNodeThatItsParentDoesNotListStandsBeforeTheFirst() {
        addKeys({"a"});
        const auto gone = view->indexForKey(viewKey + QStringLiteral("/gone"));
        QVERIFY(view->nextFromSimpleAxis(OpenView::PreviousSibling, gone).isNull());
        QCOMPARE(view->namesFrom(gone, OpenView::NextSibling).last(), QStringLiteral("a"));
    }

private:
    void addKeys(const QByteArrayList &names) {
        for (const QByteArray &name : names)
            registry->addKey(viewKey + QLatin1Char('/') + QString::fromUtf8(name), QStringLiteral("text"));
    }

    QXmlNamePool pool;
    std::unique_ptr<ScriptedRegistry> registry;
    std::unique_ptr<OpenView> view;
    QXmlNodeModelIndex root;
};

QTEST_APPLESS_MAIN(LumoConfigViewTest)

#include "lumoconfigviewtest.moc"
