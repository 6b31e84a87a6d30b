#include "support/device.h"
#include "sweeps/sweep.h"

#include <QtCore/QStorageInfo>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

namespace {

const QString registry = QStringLiteral("registry.db");
const QString root = QStringLiteral("root");
const char *const crash = "ended by a signal";
const QString changed = QStringLiteral(EXAMPLES "/new-configuration.xml");

/// A file system of 1 MiB at a folder of the device.
class SmallDisk {
public:
    explicit SmallDisk(const Device &device) : folder(device.path(QStringLiteral("disk"))) {
        QDir().mkpath(folder);
        const QString mount = QStringLiteral("mount -t tmpfs -o size=1m disk '%1'").arg(folder);
        isMounted = run(QStringLiteral("sh"), {QStringLiteral("-c"), mount}).status == 0;
    }
    ~SmallDisk() {
        if (isMounted)
            run(QStringLiteral("umount"), {folder});
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isThere() const { return isMounted; }

    /// Fills it up, but for some blocks.
    void fill(int blocks) const {
        const QStorageInfo disk(folder);
        QFile filler(folder + QStringLiteral("/filler"));
        filler.open(QIODevice::WriteOnly);
        filler.write(QByteArray(static_cast<int>(disk.bytesAvailable()) - blocks * disk.blockSize(), 'x'));
    }
    void empty() const { QFile::remove(folder + QStringLiteral("/filler")); }

private:
    const QString folder;
    bool isMounted = false;
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

    /// Both end, the settings are those of the last commit, and each import applies each section that it changes.
    void twoImportsOfTheSameSessionsAndPrinters() {
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

        for (int i = 0; i < cases; ++i) {
            QFile::remove(log);
            QCOMPARE(complaintsOfBoth(importing(changed), importing(file)), QByteArray());
            QVERIFY(settings() == wanted || settings() == otherWanted);
            QStringList applied = QString::fromUtf8(contentsOf(log)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            applied.sort();
            QCOMPARE(applied.join(QLatin1Char(' ')), QStringLiteral("display display network_printer network_printer "
                                                                    "rdp rdp ssh ssh time_zone time_zone"));
            QCOMPARE(device->leftovers(), QStringList());
        }
        qInfo("%d times", cases);
    }

    /// Both end; what is then missing, the next import puts right.
    void twoImportsOfDifferentSessionsAndPrinters() {
        const QString file = device->path(QStringLiteral("unchanged.xml"));
        QCOMPARE(device->exportTo(file).status, 0);
        int mixed = 0;
        for (int i = 0; i < cases; ++i) {
            QVERIFY(!complaintsOfBoth(importing(changed), importing(file)).contains(crash));
            mixed += settings() != wanted && settings() != settingsAfter(file) ? 1 : 0;
            QCOMPARE(device->importFrom(changed).status, 0);
            QCOMPARE(settings(), wanted);
            QCOMPARE(device->leftovers(), QStringList());
        }
        qInfo("%d times, %d of them with settings of both", cases, mixed);
    }

    void anExportDuringAnImport() {
        const QString file = device->path(QStringLiteral("export.xml"));
        for (int i = 0; i < cases; ++i) {
            const QStringList exporting = {QStringLiteral("-settings"), file, QStringLiteral("-get"),
                                           QStringLiteral("all")};
            QCOMPARE(complaintsOfBoth(importing(changed), exporting), QByteArray());
            QXmlStreamReader reader(contentsOf(file));
            while (!reader.atEnd())
                reader.readNext();
            QVERIFY2(!reader.hasError(), qUtf8Printable(reader.errorString()));
            QCOMPARE(settings(), wanted);
            QCOMPARE(device->leftovers(), QStringList());
        }
        qInfo("%d times", cases);
    }

    /// With ever more room, until the import goes through.
    void aFullDisk() {
        const SmallDisk disk(*device);
        if (!disk.isThere())
            QSKIP("no disk of its own can be mounted here");
        const QString file = QStringLiteral("disk/registry.db");
        device->environment.insert("TESSARO_REGISTRY", QFile::encodeName(device->path(file)));
        int refused = 0;
        for (int blocks = 0;; blocks += Sweep::cases(6, 1)) {
            device->write(file, pristine);
            disk.fill(blocks);
            const Outcome outcome = device->importFrom(changed);
            disk.empty();
            if (outcome.status == 0)
                break;
            QVERIFY2(outcome.err.endsWith("error: error occured on view key: root/lumo-config-view, status: 4\n") ||
                         outcome.err.startsWith("error: impossible to apply: "),
                     outcome.err.constData());
            QVERIFY(blocks > 0 || device->read(file) == pristine);
            QCOMPARE(device->importFrom(changed).err, QByteArray());
            QCOMPARE(settings(), wanted);
            QVERIFY(++refused < 100);
        }
        QCOMPARE(settings(), wanted);
        QVERIFY(refused > 0);
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
    static QStringList importing(const QString &file) {
        return {QStringLiteral("-settings"), file, QStringLiteral("-set"), QStringLiteral("all")};
    }

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

    /// What two runs at once on the pristine device print, but for the warning that the other has taken the
    /// post-action's file.
    QByteArray complaintsOfBoth(const QStringList &first, const QStringList &second) const {
        device->write(registry, pristine);
        Program one = device->startTool(first);
        Program other = device->startTool(second);
        const Outcome ends[] = {one.wait(), other.wait()};
        QByteArray printed = ends[0].err + ends[1].err + (std::min(ends[0].status, ends[1].status) < 0 ? crash : "");
        return printed.replace("post-action ignored, unsafe file: \"/tmp/last-apply-command\" \n", "");
    }

    const int cases = Sweep::cases(5, 50);
    std::unique_ptr<Device> device;
    QByteArray pristine;
    QByteArray wanted;
};

QTEST_GUILESS_MAIN(HardshipSweep)
#include "hardshipsweep.moc"
