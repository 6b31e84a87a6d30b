#include "view/lumoconfigview.h"
#include "commands/error.h"
#include "support/scriptedregistry.h"

#include <QtCore/QUrl>
#include <QtTest/QTest>
#include <QtXmlPatterns/QXmlNamePool>

namespace {

const QString view = QStringLiteral("root/lumo-config-view");

/// Opens the steps of the engine to the tests.
class OpenView : public LumoConfigView {
public:
    using LumoConfigView::FirstChild;
    using LumoConfigView::LumoConfigView;
    using LumoConfigView::NextSibling;
    using LumoConfigView::Parent;
    using LumoConfigView::PreviousSibling;

    QXmlNodeModelIndex nextFromSimpleAxis(SimpleAxis axis, const QXmlNodeModelIndex &node) const override {
        ++lookUps;
        return LumoConfigView::nextFromSimpleAxis(axis, node);
    }

    QStringList childNames(const QXmlNodeModelIndex &parent) const {
        QStringList names;
        for (auto child = nextFromSimpleAxis(FirstChild, parent); !child.isNull();
             child = nextFromSimpleAxis(NextSibling, child))
            names.append(name(child).localName(namePool()));
        return names;
    }

    mutable int lookUps = 0; // of nodes, by the engine or by the view itself
};

} // namespace

class LumoConfigViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        registry = std::make_unique<ScriptedRegistry>();
        registry->addDirectory(view);
        model = std::make_unique<OpenView>(pool);
        root = model->indexForKey(view);
    }

    void theRootIsNumberNullAndReadsNothing() {
        QCOMPARE(root.data(), 0);
        QCOMPARE(root.additionalData(), qint64(LumoConfigView::DirectoryElement));
        QCOMPARE(model->root(root), root);
        QCOMPARE(model->documentUri(root), QUrl(QStringLiteral("TODO:///")));
        QCOMPARE(model->compareOrder(root, root), QXmlNodeModelIndex::Precedes);

        const auto above = model->nextFromSimpleAxis(OpenView::Parent, root);
        QCOMPARE(model->name(above).localName(pool), QStringLiteral("root"));
        QVERIFY(model->nextFromSimpleAxis(OpenView::Parent, above).isNull());
        QCOMPARE(registry->calls, QStringList());
    }

    void aKeyIsAnElementWithOneText() {
        registry->addKey(view + QStringLiteral("/volume"), QStringLiteral("70"));
        const auto element = model->nextFromSimpleAxis(OpenView::FirstChild, root);
        const auto text = model->nextFromSimpleAxis(OpenView::FirstChild, element);
        QCOMPARE(model->kind(element), QXmlNodeModelIndex::Element);
        QCOMPARE(model->kind(text), QXmlNodeModelIndex::Text);
        QCOMPARE(model->stringValue(text), QStringLiteral("70"));
        QCOMPARE(model->nextFromSimpleAxis(OpenView::Parent, text), element);
        QCOMPARE(model->nextFromSimpleAxis(OpenView::FirstChild, element), text);
        for (const auto axis : {OpenView::FirstChild, OpenView::NextSibling, OpenView::PreviousSibling})
            QVERIFY(model->nextFromSimpleAxis(axis, text).isNull());
    }

    void aValueThatIsNotOneIsEmpty() {
        const QString key = view + QStringLiteral("/volume");
        registry->addKey(key, QString());
        for (const int entries : {0, 2}) {
            registry->keys.clear();
            registry->directories[key].clear();
            for (int i = 0; i < entries; ++i)
                registry->directories[key].insert(QString::number(i), RegNodeValue);
            const OpenView other(pool);
            const auto top = other.root({});
            const auto element = other.nextFromSimpleAxis(OpenView::FirstChild, top);
            QCOMPARE(other.stringValue(other.nextFromSimpleAxis(OpenView::FirstChild, element)), QString());
        }
    }

    void namesOfUuidsBecomeElementNames_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("name");

        QTest::newRow("in braces, its case kept") << "{0F1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}"
                                                  << "uuid-0F1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5";
        QTest::newRow("without braces") << "0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5"
                                        << "uuid-0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5";
        QTest::newRow("all zeros") << "{00000000-0000-0000-0000-000000000000}"
                                   << "{00000000-0000-0000-0000-000000000000}";
        QTest::newRow("any other name") << "display"
                                        << "display";
    }

    void namesOfUuidsBecomeElementNames() {
        QFETCH(QString, entry);
        QTEST(model->name(model->indexForKey(view + QLatin1Char('/') + entry)).localName(pool), "name");
    }

    void childrenComeInTheOrderOfTheirNames() {
        for (const char *const name : {"alpha", "Zeta", "ab", "a_b", "1"})
            registry->addKey(view + QLatin1Char('/') + QLatin1String(name), QString());
        QCOMPARE(model->childNames(root).join(QLatin1Char(' ')), QStringLiteral("1 Zeta a_b ab alpha"));

        auto last = model->indexForKey(view + QStringLiteral("/alpha"));
        QStringList backwards;
        for (; !last.isNull(); last = model->nextFromSimpleAxis(OpenView::PreviousSibling, last))
            backwards.append(model->name(last).localName(pool));
        QCOMPARE(backwards.join(QLatin1Char(' ')), QStringLiteral("alpha ab a_b Zeta 1"));
    }

    void aStepToASiblingLooksUpNothingElse() {
        for (int i = 0; i < 300; ++i)
            registry->addKey(view + QStringLiteral("/k") + QString::number(i), QString());
        QCOMPARE(model->childNames(root).size(), 300);
        QCOMPARE(model->lookUps, 301);
    }

    void anEntryOfAnotherKindEndsTheChildren() {
        for (const char *const name : {"a", "b", "c"})
            registry->addKey(view + QLatin1Char('/') + QLatin1String(name), QString());
        registry->directories[view][view + QStringLiteral("/b")] = RegNodeDefault;
        QCOMPARE(model->childNames(root), QStringList{QStringLiteral("a")});
        registry->directories[view][view + QStringLiteral("/a")] = RegNodeDefault;
        const OpenView other(pool);
        QCOMPARE(other.childNames(other.root({})), QStringList());
    }

    void aNodeThatItsParentDoesNotListStandsBeforeTheFirst() {
        registry->addKey(view + QStringLiteral("/a"), QString());
        const auto gone = model->indexForKey(view + QStringLiteral("/gone"));
        QVERIFY(model->nextFromSimpleAxis(OpenView::PreviousSibling, gone).isNull());
        QCOMPARE(model->nextFromSimpleAxis(OpenView::NextSibling, gone),
                 model->nextFromSimpleAxis(OpenView::FirstChild, root));
    }

    void aFailedReadThrowsAndIsNotKept() {
        registry->addKey(view + QStringLiteral("/a"), QStringLiteral("1"));
        for (const int status : {2, -1, 5}) {
            registry->statuses.insert(QStringLiteral("get ") + view, status);
            try {
                model->nextFromSimpleAxis(OpenView::FirstChild, root);
                QFAIL("nothing was thrown");
            } catch (const Error &error) {
                QCOMPARE(error.message(), TessaroError(view, status).message());
            }
        }
        registry->statuses.insert(QStringLiteral("get ") + view, 1);
        QCOMPARE(model->childNames(root), QStringList{QStringLiteral("a")});
        QCOMPARE(model->childNames(root), QStringList{QStringLiteral("a")});
        QCOMPARE(registry->calls.count(QStringLiteral("get ") + view), 4);
    }

private:
    QXmlNamePool pool;
    std::unique_ptr<ScriptedRegistry> registry;
    std::unique_ptr<OpenView> model;
    QXmlNodeModelIndex root;
};

QTEST_APPLESS_MAIN(LumoConfigViewTest)

#include "lumoconfigviewtest.moc"
