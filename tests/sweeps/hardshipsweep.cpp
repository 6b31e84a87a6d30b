// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "sweeps/sweep.h"

#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <memory>
#include <vector>

namespace {

const QString registry = QStringLiteral("registry.db");
const QString root = QStringLiteral("root");
const char *const crash = "ended by a signal";
const QString set = QStringLiteral("-set");
const QString get = QStringLiteral("-get");
const char *const cannotCommit = "error: error occured on view key: root/lumo-config-view, status: 4\n";
const QString changed = QStringLiteral(EXAMPLES "/new-configuration.xml");

/// A file system of a few blocks.
class SmallDisk {
public:
    SmallDisk(const QString &mountPoint, int blocks)
        : folder(mountPoint), isMounted(mount(QStringLiteral("size=%1k").arg(4 * blocks))) {}
    ~SmallDisk() { run(QStringLiteral("umount"), {folder}); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool mount(const QString &options) const {
        const QString command = QStringLiteral("mkdir -p '%1' && mount -t tmpfs -o %2 disk '%1'").arg(folder, options);
        return run(QStringLiteral("sh"), {QStringLiteral("-c"), command}).status == 0;
    }

    const QString folder;
    const bool isMounted;
};

} // namespace

/// Two at once, a full disk, a registry that somebody else holds.
class HardshipSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        device = std::make_unique<Device>();
        pristine = device->read(registry);
        wanted = settingsAfter(changed);
    }

    /// All end, the settings are those of the last commit, and each import applies each section that it changes.
    void anExportAndTwoImportsOfTheSameSessionsAndPrinters() {
        QByteArray other = contentsOf(changed);
        for (const char *const value :
             {"2560x1440", "<city>Berlin", "<keep_alive>15", "<address>192.168.10.55", "Stock &amp; orders"}) {
            QCOMPARE(other.count(value), 1);
            other.replace(value, QByteArray(value) + '1');
        }
        const QString file = device->write(QStringLiteral("other.xml"), other);
        const QByteArray otherWanted = settingsAfter(file);
        const QString log = device->path(QStringLiteral("log"));
        device->addHook(QStringLiteral("default"), "echo \"${1##*/}\" >>" + log.toUtf8());
        const QString exported = device->path(QStringLiteral("export.xml"));

        for (int i = 0; i < cases; ++i) {
            QFile::remove(log);
            QCOMPARE(complaintsOf({{changed, set}, {file, set}, {exported, get}}), QByteArray());
            QVERIFY(settings() == wanted || settings() == otherWanted);
            QStringList applied = QString::fromUtf8(contentsOf(log)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            applied.sort();
            QCOMPARE(applied.join(QLatin1Char(' ')), QStringLiteral("display display network_printer network_printer "
                                                                    "rdp rdp ssh ssh time_zone time_zone"));
            QXmlStreamReader reader(contentsOf(exported));
            while (!reader.atEnd())
                reader.readNext();
            QVERIFY2(!reader.hasError(), qUtf8Printable(reader.errorString()));
            QCOMPARE(device->leftovers(), QStringList());
        }
        qInfo("%d times", cases);
    }

    /// Both end; what is then missing, the next import puts right.
    void twoImportsOfDifferentSessionsAndPrinters() {
        const QString file = device->path(QStringLiteral("unchanged.xml"));
        QCOMPARE(device->exportTo(file).status, 0);
        const QByteArray unchanged = settings();
        int mixed = 0;
        for (int i = 0; i < cases; ++i) {
            QVERIFY(!complaintsOf({{changed, set}, {file, set}}).contains(crash));
            mixed += settings() != wanted && settings() != unchanged ? 1 : 0;
            QCOMPARE(device->importFrom(changed).status, 0);
            QCOMPARE(settings(), wanted);
            QCOMPARE(device->leftovers(), QStringList());
        }
        qInfo("%d times, %d of them with settings of both", cases, mixed);
    }

    /// With ever more room, until the import goes through.
    void aFullDisk() {
        const QString file = QStringLiteral("disk/registry.db");
        device->environment.insert("TESSARO_REGISTRY", QFile::encodeName(device->path(file)));
        bool isRefused = true;
        int refused = 0;
        for (int room = 0; isRefused && room < 100; room += Sweep::cases(6, 1)) {
            const SmallDisk disk(device->path(QStringLiteral("disk")), (pristine.size() + 4095) / 4096 + room);
            if (!disk.isMounted)
                QSKIP("no disk of its own can be mounted here");
            device->write(file, pristine);
            const QByteArray printed = device->importFrom(changed).err;
            isRefused = !printed.isEmpty();
            QVERIFY2(!isRefused || printed.endsWith(cannotCommit) || printed.startsWith("error: impossible to apply: "),
                     printed.constData());
            QVERIFY(room > 0 || device->read(file) == pristine);
            QVERIFY(disk.mount(QStringLiteral("remount,size=1m")));
            QCOMPARE(device->importFrom(changed).err, QByteArray());
            QCOMPARE(settings(), wanted);
            QCOMPARE(device->leftovers(), QStringList());
            refused += isRefused ? 1 : 0;
        }
        QVERIFY(!isRefused && refused > 0);
        qInfo("%d imports met a full disk", refused);
    }

    void aRegistryLockedForTenSecondsIsWaitedFor() {
        if (!Sweep::isLong())
            QSKIP("it takes long");
        const QString locked = device->path(QStringLiteral("locked"));
        Program holder(QStringLiteral("sqlite3"),
                       {device->path(registry), QStringLiteral("BEGIN EXCLUSIVE"),
                        QStringLiteral(".shell touch '%1'; sleep 10").arg(locked), QStringLiteral("COMMIT")});
        QVERIFY(waitUntil([&] { return QFile::exists(locked); }));
        QCOMPARE(device->importFrom(changed).err, QByteArray());
        QCOMPARE(holder.wait().status, 0);
        QCOMPARE(settings(), wanted);
    }

private:
    struct Run {
        QString file;
        QString command;
    };

    QByteArray settings() const { return device->dump(root); }

    /// The settings after an import on the pristine device.
    QByteArray settingsAfter(const QString &file) const {
        const QByteArray before = device->read(registry);
        device->write(registry, pristine);
        if (device->importFrom(file).status != 0)
            qFatal("%s cannot be imported", qUtf8Printable(file));
        const QByteArray after = settings();
        device->write(registry, before);
        return after;
    }

    /// What runs at once on the pristine device print, but for the warning that one has taken the other's post-action
    /// file.
    QByteArray complaintsOf(const QVector<Run> &runs) const {
        device->write(registry, pristine);
        std::vector<std::unique_ptr<Program>> programs;
        for (const Run &run : runs)
            programs.emplace_back(new Program(device->startTool(run.file, run.command)));
        QByteArray printed;
        for (const auto &program : programs) {
            const Outcome outcome = program->wait();
            printed += outcome.err + (outcome.status < 0 ? crash : "");
        }
        return printed.replace("post-action ignored, unsafe file: \"/tmp/last-apply-command\" \n", "");
    }

    const int cases = Sweep::cases(5, 50);
    std::unique_ptr<Device> device;
    QByteArray pristine;
    QByteArray wanted;
};

QTEST_GUILESS_MAIN(HardshipSweep)
#include "hardshipsweep.moc"
