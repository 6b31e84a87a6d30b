#include "commands/setcommand.h"
#include "commands/error.h"
#include "support/scriptedregistry.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryFile>
#include <QtTest/QTest>

/// The order of an import's work, by what the registry sees of it.
class SetCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        registry = std::make_unique<ScriptedRegistry>();
        registry->add({QStringLiteral("root/lumo-config-view/a/x = 1"), QStringLiteral("root/lumo-config-view/b/x = 1"),
                       QStringLiteral("root/lumo-config-view/c/x = 1")});
    }

    void changedSectionsAreAppliedInDocumentOrderAfterTheCommit() {
        QCOMPARE(importing("<lumo_config><c><x>2</x></c><b><x>1</x></b><a><x>2</x></a></lumo_config>"),
                 QStringLiteral("impossible to apply: c, a"));
        QCOMPARE(writes(), QLatin1String("set root/lumo-config-view/c/x = 2\n"
                                         "set root/lumo-config-view/b/x = 1\n"
                                         "set root/lumo-config-view/a/x = 2\n"
                                         "commit root/lumo-config-view\n"
                                         "create KEY\n"
                                         "set KEY = root/lumo-config-view/c\n"
                                         "commit KEY\n"
                                         "requestApply root/lumo-config-view/c\n"
                                         "del KEY\n"
                                         "commit KEY\n"
                                         "create KEY\n"
                                         "set KEY = root/lumo-config-view/a\n"
                                         "commit KEY\n"
                                         "requestApply root/lumo-config-view/a\n"
                                         "del KEY\n"
                                         "commit KEY"));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/last-apply-command")));
    }

    void aSectionThatIsRepeatedIsAppliedEachTimeAndNamedOnce() {
        QCOMPARE(importing("<lumo_config><a><x>2</x></a><a><x>3</x></a></lumo_config>"),
                 QStringLiteral("impossible to apply: a"));
        QCOMPARE(registry->calls.count(QStringLiteral("requestApply root/lumo-config-view/a")), 2);
    }

    void nothingChangedAppliesNothing() {
        QCOMPARE(importing("<lumo_config><a><x>1</x></a></lumo_config>"), QString());
        QVERIFY(!registry->calls.contains(QStringLiteral("requestApply root/lumo-config-view/a")));
    }

    void aFailureRollsBackAndAppliesNothing_data() {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("failing");
        QTest::addColumn<QString>("message");

        const QByteArray good = "<lumo_config><a><x>2</x></a></lumo_config>";
        QTest::newRow("a write") << good << "set root/lumo-config-view/a/x"
                                 << "error occured on view key: root/lumo-config-view/a/x, status: 5";
        QTest::newRow("the commit") << good << "commit root/lumo-config-view"
                                    << "error occured on view key: root/lumo-config-view, status: 5";
        QTest::newRow("the export") << good << "get root/lumo-config-view/b"
                                    << "error occured on view key: root/lumo-config-view/b, status: 5";
        QTest::newRow("the load") << QByteArray("<lumo_config><a>") << ""
                                  << "An error occured while detecting sections to apply";
        QTest::newRow("a reference") << QByteArray("<lumo_config>\n&#x1F600;</lumo_config>") << ""
                                     << "unsupported character reference at line 2";
    }

    void aFailureRollsBackAndAppliesNothing() {
        QFETCH(QByteArray, document);
        QFETCH(QString, failing);
        registry->statuses.insert(failing, 5);
        QTEST(importing(document), "message");
        QCOMPARE(registry->calls.last(), QStringLiteral("rollback "));
        QVERIFY(!registry->calls.contains(QStringLiteral("requestApply root/lumo-config-view/a")));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/last-apply-command")));
    }

    void aRefusalIsTheTriggersResult() {
        TessaroClient client;
        QCOMPARE(SetCommand::applySection(client, QStringLiteral("root/lumo-config-view/a")), 7);
        const QString firstKey = registry->calls.first();
        registry->calls.clear();
        SetCommand::applySection(client, QStringLiteral("root/lumo-config-view/a"));
        QVERIFY(registry->calls.first() != firstKey);
    }

private:
    /// The message that the import of @p document ends with, empty on success.
    static QString importing(const QByteArray &document) {
        QTemporaryFile file;
        if (!file.open() || file.write(document) != document.size() || !file.flush())
            qFatal("cannot write the document");
        try {
            SetCommand(file.fileName(), QStringLiteral("all"), false).execute();
        } catch (const Error &error) {
            return error.message();
        }
        return {};
    }

    /// What was written, apply keys as KEY.
    QString writes() const {
        return registry->writes()
            .join(QLatin1Char('\n'))
            .replace(QRegularExpression(QStringLiteral("tmp/applying/\\{[-0-9a-f]{36}\\}")), QStringLiteral("KEY"));
    }

    std::unique_ptr<ScriptedRegistry> registry;
};

QTEST_GUILESS_MAIN(SetCommandTest)

#include "setcommandtest.moc"
