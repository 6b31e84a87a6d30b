// SPDX-License-Identifier: MIT
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
        for (const char *const section : {"rdp", "ssh", "telnet"})
            addEntries(QLatin1String(section), QStringLiteral("sessions"));
        addEntries(QStringLiteral("network_printer"), QStringLiteral("printers"));
    }

    QByteArray json() const { return json(view); }

    /// With the same keys but empty, and without printers and some of the sessions, which the templates bring back.
    QByteArray emptiedJson() {
        QJsonObject emptied = emptiedOf(view);
        for (const QString &section : templates.keys())
            if (section == QLatin1String("network_printer") || sweep.chance(30))
                emptied.insert(section, QJsonObject());
        return json(emptied);
    }

    /// The document that comes back: ids are lower case.
    QByteArray comingBack(QByteArray document) const {
        for (const QByteArray &id : upperCaseIds)
            document.replace(id, id.toLower());
        return document;
    }

private:
    QByteArray json(const QJsonObject &settings) const {
        return "{\"root\":{\"lumo-config-view\":" + QJsonDocument(settings).toJson() +
               "},\"templates\":{\"lumo-config-view\":" + QJsonDocument(templates).toJson() +
               "},\"tmp\":{\"applying\":{}}}";
    }

    static QJsonObject emptiedOf(const QJsonObject &directory) {
        QJsonObject emptied;
        for (auto entry = directory.begin(); entry != directory.end(); ++entry)
            emptied.insert(entry.key(), entry->isObject() ? QJsonValue(emptiedOf(entry->toObject())) : QString());
        return emptied;
    }

    QString name() {
        static const QString letters = QStringLiteral("abcXYZ_éßαЖ漢0129-.");
        QString made(letters.at(sweep.below(letters.size() - 6)));
        for (int i = sweep.below(9); i >= 0; --i)
            made.append(letters.at(sweep.below(letters.size())));
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
        const auto code = static_cast<uint>(sweep.below(sweep.chance(50) ? 0x10000 : 0x110000));
        const bool isAllowed = (code >= 0x20 && code < 0xd800) || (code >= 0xe000 && code <= 0xfffd) || code >= 0x10000;
        return isAllowed ? QString::fromUcs4(&code, 1) : character();
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

    /// Entries named by UUIDs, or one whose name is no braced lower-case UUID: two such could change places.
    void addEntries(const QString &section, const QString &kind) {
        const QStringList keys = {QStringLiteral("autostart"), QStringLiteral("driver"), name()};
        const int count = sweep.below(4);
        QJsonObject entries;
        for (int i = 0; i < count; ++i) {
            QString id = QUuid::createUuidV5(QUuid(), QByteArray::number(sweep.below(0x7fffffff))).toString();
            if (count == 1) {
                upperCaseIds.append(id.toUpper().toUtf8());
                id = sweep.chance(50) ? id.toUpper() : id.toUpper().mid(1).chopped(1);
            }
            QJsonObject entry = keysNamed(keys);
            entry.insert(QStringLiteral("name"), QString::number(i) + value()); // of printers, all differ
            entries.insert(id, entry);
        }
        const QJsonObject defaults = emptiedOf(keysNamed(keys + QStringList(QStringLiteral("name"))));
        view.insert(section, QJsonObject{{kind, entries}});
        templates.insert(section, QJsonObject{{kind, QJsonObject{{QStringLiteral("{UUID}"), defaults}}}});
    }

    Sweep &sweep;
    QJsonObject view;
    QJsonObject templates;
    QVector<QByteArray> upperCaseIds;
};

} // namespace

/// Settings made up at random come back from their document.
class RoundTripSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anExportImportedIsExportedAgain() {
        const Device device;
        const QString file = device.path(QStringLiteral("home/f"));
        Sweep sweep;
        qint64 bytes = 0;
        const int cases = Sweep::cases(10, 200);
        for (int i = 0; i < cases; ++i) {
            MadeUpRegistry registry(sweep);
            device.load(registry.json());
            QCOMPARE(device.run("quendarsettings -settings f -get all").err, QByteArray());
            const QByteArray document = contentsOf(file);
            device.load(registry.emptiedJson());
            QCOMPARE(device.run("quendarsettings -settings f -set all").err, QByteArray());
            QCOMPARE(device.run("quendarsettings -settings f -get all").err, QByteArray());
            QCOMPARE(contentsOf(file), registry.comingBack(document));
            QCOMPARE(device.leftovers(), QStringList());
            bytes += document.size();
        }
        qInfo("%d registries, %lld bytes of documents", cases, static_cast<long long>(bytes));
    }
};

QTEST_GUILESS_MAIN(RoundTripSweep)
#include "roundtripsweep.moc"
