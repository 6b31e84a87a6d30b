#include "commands/error.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "support/scriptedregistry.h"
#include "support/stories.h"
#include "support/warnings.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

namespace {

const QString knownId = QStringLiteral("{0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}");

/// A story does not know the UUIDs that the import makes up.
QStringList withNewUuidsMasked(QStringList lines) {
    static const QRegularExpression uuid(QStringLiteral("\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}"));
    return lines.replaceInStrings(knownId, QStringLiteral("ID"))
        .replaceInStrings(uuid, QStringLiteral("{new}"))
        .replaceInStrings(QRegularExpression(QStringLiteral("\\bID\\b")), knownId);
}

QStringList expandedLines(const Story &story, const char *part) {
    return story.lines(part)
        .replaceInStrings(QRegularExpression(QStringLiteral("\\bVIEW\\b")), QStringLiteral("root/lumo-config-view"))
        .replaceInStrings(QRegularExpression(QStringLiteral("\\bID\\b")), knownId);
}

QString expandedText(const Story &story, const char *part) {
    return expandedLines(story, part).join(QLatin1Char('\n'));
}

} // namespace

/// What the applier makes of documents: imports.txt.
class ImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsApplied_data() {
        QTest::addColumn<Story>("story");
        for (const Story &story : storiesOf(QStringLiteral(STORIES "/imports.txt")))
            QTest::newRow(qUtf8Printable(story.name)) << story;
    }

    void aDocumentIsApplied() {
        QFETCH(Story, story);
        ScriptedRegistry registry;
        registry.add(expandedLines(story, "registry"));
        for (const QString &line : expandedLines(story, "failing"))
            registry.statuses.insert(line.section(QLatin1String(" -> "), 0, 0),
                                     line.section(QLatin1String(" -> "), 1, 1).toInt());

        QString thrown;
        const Warnings warnings;
        LumoConfigViewModifier applier;
        QCOMPARE(registry.calls, QStringList());
        try {
            applyDocument(decodedDocument(expandedText(story, "document").toUtf8()), applier);
        } catch (const Error &error) {
            thrown = error.message();
        }
        QCOMPARE(withNewUuidsMasked(registry.writes()), expandedLines(story, "writes"));
        QCOMPARE(withNewUuidsMasked(Warnings::collected()), expandedLines(story, "warnings"));
        QCOMPARE(thrown, expandedText(story, "error"));
    }

    void eachListingIsReadOnce() {
        ScriptedRegistry registry;
        registry.add({QStringLiteral("root/lumo-config-view/audio/volume = 70")});
        LumoConfigViewModifier applier;
        applyDocument(QStringLiteral("<lumo_config>\n<audio>\n<volume/>\n</audio>\n<audio>\n</audio>\n</lumo_config>"),
                      applier);
        QStringList listings = registry.calls.filter(QRegularExpression(QStringLiteral("^get ")));
        QCOMPARE(listings.removeDuplicates(), 0);
        QCOMPARE(listings.size(), 3);
    }

    void rollbackDropsAllThatIsPending() {
        ScriptedRegistry registry;
        LumoConfigViewModifier applier;
        applier.rollback();
        QCOMPARE(registry.calls, QStringList{QStringLiteral("rollback ")});
    }
};

QTEST_APPLESS_MAIN(ImportTest)

#include "importtest.moc"
