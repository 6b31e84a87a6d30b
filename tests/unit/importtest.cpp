// SPDX-License-Identifier: MIT
#include "commands/setcommand.h"
#include "document/document.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "report/error.h"
#include "stages/applysection.h"
#include "support/scriptedregistry.h"
#include "support/stories.h"
#include "support/warnings.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSystemSemaphore>
#include <QtCore/QTemporaryFile>
#include <QtTest/QTest>

using namespace quendar;

namespace {

constexpr const char *parts = "registry failing document writes warnings error";

/// Masks the UUIDs that the import made up: those that stand in no part of the story, in whatever form.
QStringList withNewUuidsMasked(QStringList lines, const Story &story) {
    QString told;
    for (const QStringList &part : story.parts)
        told += part.join(QLatin1Char(' ')).toLower();
    static const QRegularExpression uuid(QStringLiteral("\\{([0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12})\\}"));
    QRegularExpressionMatchIterator matches = uuid.globalMatch(lines.join(QLatin1Char(' ')));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (!told.contains(match.captured(1)))
            lines.replaceInStrings(match.captured(), QStringLiteral("{new}"));
    }
    return lines;
}

void apply(const QByteArray &document) {
    LumoConfigViewModifier applier;
    applyDocument(decodedDocument(document), applier);
}

void import(const QByteArray &document) {
    QTemporaryFile file;
    if (!file.open() || file.write(document) != document.size() || !file.flush())
        qFatal("cannot write the document");
    SetCommand(file.fileName(), QStringLiteral("all"), false).execute();
}

/// Whose apply service has answered when the request returns.
class AnsweringClient final : public TessaroClient {
public:
    int requestApply(const QString & /*section*/, const QString &trigger) override {
        set(trigger, QStringLiteral("timeout"), RegParamValue);
        QSystemSemaphore(trigger, 0, QSystemSemaphore::Open).release();
        return 0;
    }
};

} // namespace

/// What the registry hears of a document.
class ImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsApplied_data() { addStories(QStringLiteral(STORIES "/imports.txt"), parts); }

    void aDocumentIsApplied() {
        ScriptedRegistry registry;
        playStory(registry, apply);
        QStringList listings = registry.calls.filter(QRegularExpression(QStringLiteral("^get ")));
        QCOMPARE(listings.removeDuplicates(), 0);
    }

    void aDocumentIsImported_data() { addStories(QStringLiteral(STORIES "/commands.txt"), parts); }

    void aDocumentIsImported() {
        ScriptedRegistry registry;
        playStory(registry, import);
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/last-apply-command")));
    }

    void anApplyTellsWhatTheServiceHasLeft() {
        ScriptedRegistry registry;
        AnsweringClient client;
        const ApplyResult answered = applySection(client, QStringLiteral("root/lumo-config-view/a"));
        QCOMPARE(answered.status, 0);
        QCOMPARE(answered.answer, QStringLiteral("timeout"));
        QCOMPARE(SetCommand::applySection(client, QStringLiteral("root/lumo-config-view/a")), 6);
        QCOMPARE(registry.directories.value(QStringLiteral("tmp/applying")).size(), 0);
    }

private:
    static void playStory(ScriptedRegistry &registry, void (*act)(const QByteArray &document)) {
        QFETCH(const Story, story);
        registry.add(story.lines("registry"));
        for (const QString &line : story.lines("failing"))
            registry.statuses.insert(line.section(QLatin1String(" -> "), 0, 0),
                                     line.section(QLatin1String(" -> "), 1, 1).toInt());
        QString thrown;
        const Warnings warnings;
        try {
            act(story.text("document").toUtf8());
        } catch (const Error &error) {
            thrown = error.message();
        }
        QCOMPARE(withNewUuidsMasked(registry.writes(), story), story.lines("writes"));
        QCOMPARE(withNewUuidsMasked(Warnings::collected(), story), story.lines("warnings"));
        QCOMPARE(thrown, story.text("error"));
    }
};

QTEST_GUILESS_MAIN(ImportTest)

#include "importtest.moc"
