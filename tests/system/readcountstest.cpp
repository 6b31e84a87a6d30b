#include "commands/getcommand.h"
#include "commands/setcommand.h"
#include "support/device.h"

#include <QtCore/QBuffer>
#include <QtTest/QtTest>

#include <dlfcn.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

int statements = 0; // begun since it was set
int reads = 0;      // of any file, likewise

template <typename Function>
Function *nextOf(Function * /*own*/, const char *name) {
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

/// Comes before SQLite's own.
int sqlite3_step(sqlite3_stmt *statement) {
    static auto *const next = nextOf(sqlite3_step, "sqlite3_step");
    if (sqlite3_stmt_busy(statement) == 0)
        ++statements;
    return next(statement);
}

/// By which SQLite reads a page, and a client looks whether another has committed.
ssize_t pread64(int file, void *data, size_t size, off64_t offset) {
    static auto *const next = nextOf(pread64, "pread64");
    ++reads;
    return next(file, data, size, offset);
}

/// What a run asks of the registry's file, counted: it does not grow with the number of settings.
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

    void noSettingIsReadByItself() {
        ofAnImport(4, 200);
        QVERIFY2(reads < 200, qPrintable(QString::number(reads)));
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
        statements = 0;
        GetCommand::exportConfig(&buffer);
        return statements;
    }

    int ofAnImport(int sections, int settingsOfEach) {
        ofAnExport(sections, settingsOfEach);
        const QString file = device.write(QStringLiteral("document.xml"), document);
        statements = reads = 0;
        SetCommand(file, QStringLiteral("all"), false).execute();
        return statements;
    }

    const Device device;
    QByteArray document;
};

QTEST_GUILESS_MAIN(ReadCountsTest)
#include "readcountstest.moc"
