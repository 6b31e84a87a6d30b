#include "support/device.h"
#include "sweeps/sweep.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QUuid>
#include <QtTest/QtTest>

namespace {

/// A registry made up at random, with what a document can carry and what it drops.
class MadeUpRegistry {
public:
    explicit MadeUpRegistry(Sweep &source) : sweep(source) {
        for (int i = sweep.below(6); i >= 0; --i)
            view.insert(name(), directory(3));
        for (const char *const section :
             {"display resolution color_depth gamma primary_monitor", "time_zone area city utc_offset",
              "wireless enable channel passphrase", "list entry_1 entry_2 entry_10", "cda server enable"}) {
            const QStringList words = QString::fromLatin1(section).split(QLatin1Char(' '));
            view.insert(words.first(), keysNamed(words.mid(1)));
        }
        if (sweep.chance(50))
            view.insert(QStringLiteral("cda"),
                        QJsonObject{{QStringLiteral("enable"), QStringLiteral("true")}, {name(), value()}});
        for (const char *const type : {"rdp", "ssh", "telnet"})
            addSessions(QLatin1String(type));
        addPrinters();
    }

    /// As it is loaded.
    QByteArray json() const { return json(view); }

    /// With the same keys but empty, and some of the sessions and printers.
    QByteArray emptiedJson() {
        QJsonObject emptied = emptiedOf(view);
        for (const QString &section : templates.keys()) {
            // a printer is known by its name: without it, it would be another one
            QJsonObject kept = section == QLatin1String("network_printer") || sweep.chance(30)
                                   ? QJsonObject()
                                   : emptied[section].toObject();
            emptied.insert(section, kept);
        }
        return json(emptied);
    }

    /// The document that comes back: session ids are lower case.
    QByteArray expected(QByteArray document) const {
        for (const QString &id : upperCaseIds)
            document.replace(id.toUtf8(), id.toLower().toUtf8());
        return document;
    }

private:
    QByteArray json(const QJsonObject &settings) const {
        const QString name = QStringLiteral("lumo-config-view");
        return QJsonDocument(
                   QJsonObject{{QStringLiteral("root"), QJsonObject{{name, settings}}},
                               {QStringLiteral("templates"), QJsonObject{{name, templates}}},
                               {QStringLiteral("tmp"), QJsonObject{{QStringLiteral("applying"), QJsonObject()}}}})
            .toJson();
    }

    static QJsonObject emptiedOf(const QJsonObject &directory) {
        QJsonObject emptied;
        for (auto entry = directory.begin(); entry != directory.end(); ++entry)
            emptied.insert(entry.key(), entry->isObject() ? QJsonValue(emptiedOf(entry->toObject())) : QString());
        return emptied;
    }

    QString name() {
        static const QString first = QStringLiteral("abcXYZ_éßαЖ漢");
        static const QString more = first + QStringLiteral("0129-.");
        QString made(first.at(sweep.below(first.size())));
        for (int i = sweep.below(9); i >= 0; --i)
            made.append(more.at(sweep.below(more.size())));
        return made;
    }

    /// Any text that comes back: of what XML allows, without carriage returns and without white space at the ends.
    QString value() {
        QString made;
        for (int i = sweep.chance(3) ? 5000 : sweep.below(24); i > 0; --i)
            made.append(character());
        return made.trimmed();
    }

    QString character() {
        static const QString common = QStringLiteral("<&>\"']]>&amp;&#65;%/{}\\ \t\n-ab é漢");
        if (sweep.chance(60))
            return common.at(sweep.below(common.size()));
        for (;;) {
            const uint code = static_cast<uint>(sweep.chance(50) ? sweep.below(0x10000) : sweep.below(0x110000));
            const bool isLow = code == 0x9 || code == 0xa || (code >= 0x20 && code < 0xd800);
            if (isLow || (code >= 0xe000 && code <= 0xfffd) || code >= 0x10000)
                return QString::fromUcs4(&code, 1);
        }
    }

    QJsonObject directory(int depth) {
        QJsonObject made;
        for (int i = sweep.below(6); i > 0; --i)
            made.insert(name(), depth > 0 && sweep.chance(25) ? QJsonValue(directory(depth - 1)) : value());
        return made;
    }

    QJsonObject keysNamed(const QStringList &names) {
        QJsonObject made;
        for (const QString &key : names)
            made.insert(key, value());
        return made;
    }

    QString uuid() {
        const auto part = [this] { return static_cast<quint32>(sweep.below(0x7fffffff)) + 1; };
        const quint32 parts[] = {part(), part(), part(), part()};
        return QUuid::fromRfc4122(QByteArray(reinterpret_cast<const char *>(parts), sizeof parts)).toString();
    }

    /// Some, or one that comes back under another name: two of these could change places.
    void addSessions(const QString &type) {
        QJsonObject sessions;
        const QStringList keys = {QStringLiteral("name"), QStringLiteral("autostart"), name()};
        if (sweep.chance(30)) {
            const QString id = uuid().toUpper();
            upperCaseIds.append(id);
            sessions.insert(sweep.chance(50) ? id.mid(1).chopped(1) : id, keysNamed(keys));
        }
        for (int i = sessions.isEmpty() ? sweep.below(4) : 0; i > 0; --i)
            sessions.insert(uuid(), keysNamed(keys));
        addSection(type, QStringLiteral("sessions"), sessions, keysNamed(keys));
    }

    void addPrinters() {
        QJsonObject printers;
        const QStringList keys = {QStringLiteral("address"), QStringLiteral("port"), QStringLiteral("driver"), name()};
        for (int i = sweep.below(4); i > 0; --i) {
            QJsonObject printer = keysNamed(keys);
            printer.insert(QStringLiteral("name"), QString::number(i) + value());
            printers.insert(uuid(), printer);
        }
        addSection(QStringLiteral("network_printer"), QStringLiteral("printers"), printers, keysNamed(keys));
    }

    void addSection(const QString &section, const QString &kind, const QJsonObject &entries,
                    const QJsonObject &defaults) {
        view.insert(section, QJsonObject{{kind, entries}});
        templates.insert(section, QJsonObject{{kind, QJsonObject{{QStringLiteral("{UUID}"), emptiedOf(defaults)}}}});
    }

    Sweep &sweep;
    QJsonObject view;
    QJsonObject templates;
    QStringList upperCaseIds;
};

} // namespace

/// Settings made up at random come back from their document.
class RoundTripSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anExportImportedIsExportedAgain() {
        const Device device;
        Sweep sweep;
        qint64 bytes = 0;
        const int cases = Sweep::cases(10, 200);
        for (int i = 0; i < cases; ++i) {
            MadeUpRegistry registry(sweep);
            device.load(registry.json());
            QCOMPARE(device.exportTo(device.path(QStringLiteral("first.xml"))).err, QByteArray());
            device.load(registry.emptiedJson());
            const Outcome import = device.importFrom(device.path(QStringLiteral("first.xml")));
            QVERIFY2(import.status == 0 && import.err.isEmpty(),
                     ("registry " + QByteArray::number(i) + ": " + import.err).constData());
            QCOMPARE(device.exportTo(device.path(QStringLiteral("second.xml"))).err, QByteArray());

            const QByteArray first = device.read(QStringLiteral("first.xml"));
            QCOMPARE(device.read(QStringLiteral("second.xml")), registry.expected(first));
            QCOMPARE(device.leftovers(), QStringList());
            bytes += first.size();
        }
        qInfo("%d registries, %lld bytes of documents", cases, static_cast<long long>(bytes));
    }
};

QTEST_GUILESS_MAIN(RoundTripSweep)
#include "roundtripsweep.moc"
