#include "commands/error.h"
#include "commands/getcommand.h"
#include "support/scriptedregistry.h"
#include "support/stories.h"

#include <QtCore/QBuffer>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

namespace {

const QString view = QStringLiteral("root/lumo-config-view");

QByteArray exported() {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    GetCommand::exportConfig(&buffer);
    return buffer.data();
}

QString failure() {
    try {
        exported();
    } catch (const Error &error) {
        return error.message();
    }
    return {};
}

QString key(const char *path) {
    return view + QLatin1Char('/') + QLatin1String(path);
}

} // namespace

class ExportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        registry = std::make_unique<ScriptedRegistry>();
        registry->addDirectory(view);
    }

    void theDocumentShowsTheRegistry_data() {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QString>("document");
        for (const Story &story : storiesOf(QStringLiteral(STORIES "/exports.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story.lines("registry") << story.text("document");
    }

    void theDocumentShowsTheRegistry() {
        QFETCH(QStringList, settings);
        registry->add(settings.replaceInStrings(QRegularExpression(QStringLiteral("^")), view + QLatin1Char('/')));
        QFETCH(QString, document);
        const QString frame =
            QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<lumo_config version=\"1.1\" "
                           "creator_version=\"1.0\" creator=\"quendartc-quendarsettings\"%1\n");
        QCOMPARE(QString::fromUtf8(exported()),
                 frame.arg(document.isEmpty() ? QStringLiteral("/>")
                                              : QStringLiteral(">\n") + document + QStringLiteral("\n</lumo_config>")));
        QCOMPARE(registry->writes(), QStringList());
    }

    void eachPathIsReadOnce() {
        registry->addKey(key("display/resolution"), QStringLiteral("1920x1080"));
        registry->addKey(key("rdp/sessions/{0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}/name"), QStringLiteral("office"));
        exported();
        QStringList paths = registry->calls;
        QCOMPARE(paths.removeDuplicates(), 0);
        QCOMPARE(paths.size(), 7);
    }

    void aFailedReadAnywhereEndsTheExport() {
        registry->addKey(key("a/b"), QStringLiteral("1"));
        exported();
        for (const QString &call : QStringList(registry->calls)) {
            registry->statuses = {{call, 5}};
            QCOMPARE(failure(), TessaroError(call.mid(4), 5).message());
        }
    }

private:
    std::unique_ptr<ScriptedRegistry> registry;
};

QTEST_GUILESS_MAIN(ExportTest)

#include "exporttest.moc"
