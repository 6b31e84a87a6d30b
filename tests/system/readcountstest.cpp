// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "commands/setcommand.h"
#include "support/device.h"

#include <QtCore/QBuffer>
#include <QtTest/QtTest>

#include <dlfcn.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

// each since it was set
int statements = 0;
int pages = 0; // read from any file
int looks = 0; // at a few bytes of one

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names for SQLite's and for ours
int __real_sqlite3_step(sqlite3_stmt *statement);

int __wrap_sqlite3_step(sqlite3_stmt *statement) {
    if (sqlite3_stmt_busy(statement) == 0)
        ++statements;
    return __real_sqlite3_step(statement);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
}

/// By which SQLite reads pages, and a client looks whether another has committed.
ssize_t pread64(int file, void *data, size_t size, off64_t offset) {
    static const auto next = reinterpret_cast<decltype(&pread64)>(::dlsym(RTLD_NEXT, "pread64"));
    ++(size < 16 ? looks : pages);
    return next(file, data, size, offset);
}

/// What a run asks of the registry's file, counted: of all this, only the looks grow with the number of settings.
class ReadCountsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("TESSARO_REGISTRY", device.environment.value("TESSARO_REGISTRY")); }

    void anExportTakesOneStatementForADirectory() {
        const int some = ofAnExport(4, 2);
        QVERIFY(some > 0);
        QCOMPARE(ofAnExport(4, 200), some);
        QCOMPARE(ofAnExport(24, 2), some + 20);
    }

    void anImportOfWhatIsThereTakesTwo() {
        const int some = ofAnImport(4, 2);
        QVERIFY(some > 0);
        QCOMPARE(ofAnImport(4, 200), some);
        QCOMPARE(ofAnImport(24, 2), some + 2 * 20);
    }

    void aCallTakesOneLookAtTheFile() {
        ofAnExport(4, 2);
        const int some = looks;
        QVERIFY(some > 0);
        ofAnExport(4, 200);
        QCOMPARE(looks, some + 4 * 198);
        ofAnExport(24, 2);
        QCOMPARE(looks, some + 20 * (1 + 2));
    }

    void noSettingIsReadByItself() {
        ofAnImport(4, 200);
        QVERIFY2(pages < 200, qPrintable(QString::number(pages)));
    }

private:
    /// Statements of an export of so many sections.
    int ofAnExport(int sections, int settingsOfEach) {
        QByteArrayList settings;
        for (int i = 0; i < settingsOfEach; ++i)
            settings.append("\"setting" + QByteArray::number(i) + "\": \"value\"");
        QByteArrayList view;
        for (int i = 0; i < sections; ++i)
            view.append("\"section" + QByteArray::number(i) + "\": {" + settings.join(", ") + '}');
        device.load("{\"root\": {\"lumo-config-view\": {" + view.join(", ") + "}}}");
        QBuffer buffer(&document);
        buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
        statements = pages = looks = 0;
        quendar::GetCommand::exportConfig(&buffer);
        return statements;
    }

    int ofAnImport(int sections, int settingsOfEach) {
        ofAnExport(sections, settingsOfEach);
        const QString file = device.write(QStringLiteral("document.xml"), document);
        statements = pages = looks = 0;
        quendar::SetCommand(file, QStringLiteral("all"), false).execute();
        return statements;
    }

    const Device device;
    QByteArray document;
};

QTEST_GUILESS_MAIN(ReadCountsTest)
#include "readcountstest.moc"
