// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "report/error.h"
#include "support/scriptedregistry.h"
#include "support/stories.h"

#include <QtCore/QBuffer>
#include <QtTest/QTest>

using namespace quendar;

namespace {

/// The document, or the message of the error.
QString exported() {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    try {
        GetCommand::exportConfig(&buffer);
    } catch (const Error &error) {
        return error.message();
    }
    return QString::fromUtf8(buffer.data());
}

} // namespace

class ExportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDocumentShowsTheRegistry_data() { addStories(QStringLiteral(STORIES "/exports.txt"), "registry document"); }

    void theDocumentShowsTheRegistry() {
        QFETCH(const Story, story);
        ScriptedRegistry registry;
        registry.add(story.lines("registry"));
        const QString settings = story.text("document");
        const QString document =
            QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<lumo_config version=\"1.1\" "
                           "creator_version=\"1.0\" creator=\"quendartc-quendarsettings\"") +
            (settings.isEmpty() ? QStringLiteral("/>\n") : QStringLiteral(">\n%1\n</lumo_config>\n").arg(settings));
        QCOMPARE(exported(), document);
        QCOMPARE(registry.writes(), QStringList());

        QStringList reads = registry.calls;
        QCOMPARE(reads.removeDuplicates(), 0);
        for (const QString &read : reads) {
            registry.statuses = {{read, 1}};
            QCOMPARE(exported(), document);
            registry.statuses = {{read, 5}};
            QCOMPARE(exported(), TessaroError(read.mid(4), 5).message());
        }
    }
};

QTEST_GUILESS_MAIN(ExportTest)

#include "exporttest.moc"
