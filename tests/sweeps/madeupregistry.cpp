// SPDX-License-Identifier: MIT
#include "sweeps/madeupregistry.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>
#include <QtCore/QUuid>

namespace {

QString character(Sweep &sweep) {
    static const QString common = QStringLiteral("<&>\"']]>&amp;&#65;%/{}\\ \t\n-ab é漢");
    if (sweep.chance(60))
        return common.at(sweep.below(common.size()));
    const auto code = static_cast<uint>(sweep.below(sweep.chance(50) ? 0x10000 : 0x110000));
    const bool isAllowed = (code >= 0x20 && code < 0xd800) || (code >= 0xe000 && code <= 0xfffd) || code >= 0x10000;
    return isAllowed ? QString::fromUcs4(&code, 1) : character(sweep);
}

QJsonObject emptiedOf(const QJsonObject &directory) {
    QJsonObject emptied;
    for (auto entry = directory.begin(); entry != directory.end(); ++entry)
        emptied.insert(entry.key(), entry->isObject() ? QJsonValue(emptiedOf(entry->toObject())) : QString());
    return emptied;
}

} // namespace

QString madeUpName(Sweep &sweep) {
    static const QString letters = QStringLiteral("abcXYZ_éßαЖ漢0129-.");
    QString made(letters.at(sweep.below(letters.size() - 6)));
    for (int i = sweep.below(9); i >= 0; --i)
        made.append(letters.at(sweep.below(letters.size())));
    return made;
}

QString madeUpText(Sweep &sweep) {
    QString made;
    for (int i = sweep.chance(3) ? 5000 : sweep.below(24); i > 0; --i)
        made.append(character(sweep));
    return made.trimmed();
}

MadeUpRegistry::MadeUpRegistry(Sweep &source, Contents which) : sweep(source), contents(which) {
    for (int i = sweep.below(6); i >= 0; --i)
        view.insert(madeUpName(sweep), directory(3));
    for (const char *const section :
         {"display resolution color_depth gamma primary_monitor", "time_zone area city utc_offset",
          "wireless enable channel passphrase", "list entry_1 entry_2 entry_10", "cda server enable"}) {
        const QStringList words = QString::fromLatin1(section).split(QLatin1Char(' '));
        view.insert(words.first(), keysNamed(words.mid(1)));
    }
    if (sweep.chance(50))
        view.insert(QStringLiteral("cda"),
                    QJsonObject{{QStringLiteral("enable"), QStringLiteral("true")}, {madeUpName(sweep), value()}});
    for (const char *const section : {"rdp", "ssh", "telnet"})
        addEntries(QLatin1String(section), QStringLiteral("sessions"));
    addEntries(QStringLiteral("network_printer"), QStringLiteral("printers"));
    if (contents == Anything)
        addOddities();
}

QByteArray MadeUpRegistry::emptiedJson() {
    QJsonObject emptied = emptiedOf(view);
    for (const QString &section : templates.keys())
        if (section == QLatin1String("network_printer") || sweep.chance(30))
            emptied.insert(section, QJsonObject());
    return json(emptied);
}

QByteArray MadeUpRegistry::comingBack(QByteArray document) const {
    for (const QByteArray &id : upperCaseIds)
        document.replace(id, id.toLower());
    return document;
}

QByteArray MadeUpRegistry::json(const QJsonObject &settings) const {
    return "{\"root\":{\"lumo-config-view\":" + QJsonDocument(settings).toJson() +
           "},\"templates\":{\"lumo-config-view\":" + QJsonDocument(templates).toJson() +
           "},\"tmp\":{\"applying\":{}}}";
}

QString MadeUpRegistry::value() {
    if (sometimes(4))
        return QStringLiteral("root/lumo-config-view/") + (sweep.chance(50) ? madeUpName(sweep) : id());
    const QString text = madeUpText(sweep);
    return sometimes(5) ? QStringLiteral(" \t") + text : sometimes(5) ? text + QStringLiteral("\rx\r\n") : text;
}

QJsonObject MadeUpRegistry::directory(int depth) {
    QJsonObject made;
    for (int i = sweep.below(6); i > 0; --i)
        made.insert(madeUpName(sweep), depth > 0 && sweep.chance(25) ? QJsonValue(directory(depth - 1)) : value());
    return made;
}

QJsonObject MadeUpRegistry::keysNamed(const QStringList &names) {
    QJsonObject made;
    for (const QString &key : names)
        made.insert(key, value());
    return made;
}

QString MadeUpRegistry::id() {
    return QUuid::createUuidV5(QUuid(), QByteArray::number(sweep.below(0x7fffffff))).toString();
}

/// Entries named by UUIDs, or one whose name is no braced lower-case UUID: two such could change places.
void MadeUpRegistry::addEntries(const QString &section, const QString &kind) {
    const QStringList keys = {QStringLiteral("autostart"), QStringLiteral("driver"), madeUpName(sweep)};
    const int count = sweep.below(4);
    QJsonObject entries;
    for (int i = 0; i < count; ++i) {
        QString name = id();
        if (count == 1) {
            upperCaseIds.append(name.toUpper().toUtf8());
            name = sweep.chance(50) ? name.toUpper() : name.toUpper().mid(1).chopped(1);
        } else if (sometimes(10)) {
            name = sweep.chance(90) ? name.toUpper() : madeUpName(sweep);
        }
        QJsonObject entry = keysNamed(keys);
        entry.insert(QStringLiteral("name"), sometimes(15) ? QStringLiteral("one of two")
                                                           : QString::number(i) + value()); // of printers, all differ
        if (sometimes(15))
            entry.insert(madeUpName(sweep), directory(1)); // no template brings it back
        if (sometimes(15))
            entry.remove(keys.at(sweep.below(2))); // which its template has
        entries.insert(name, entry);
    }
    view.insert(section, sometimes(10) ? QJsonObject() : QJsonObject{{kind, entries}});
    if (sometimes(10)) {
        isWithoutDefaults = true;
        return;
    }
    const QJsonObject defaults = emptiedOf(keysNamed(keys + QStringList(QStringLiteral("name"))));
    templates.insert(section, QJsonObject{{kind, QJsonObject{{QStringLiteral("{UUID}"), defaults}}}});
}

/// Names and kinds that a document takes for something else.
void MadeUpRegistry::addOddities() {
    const auto putInto = [&](const QString &section, const QString &name, const QJsonValue &node) {
        QJsonObject directory = view.value(section).toObject();
        directory.insert(name, node);
        view.insert(section, directory);
    };
    if (sweep.chance(50))
        putInto(QStringLiteral("ssh"), madeUpName(sweep), value());
    if (sweep.chance(10))
        view.insert(madeUpName(sweep), value());
    if (sweep.chance(10))
        putInto(QStringLiteral("list"), id(), sweep.chance(50) ? QJsonValue(value()) : QJsonValue(directory(1)));
    if (sweep.chance(10))
        putInto(QStringLiteral("list"), QStringLiteral("ssh"), view.value(QStringLiteral("rdp")));
    if (sweep.chance(5)) // a document has them taken for the device's
        putInto(QStringLiteral("list"), QStringLiteral("network_printer"),
                QJsonObject{{QStringLiteral("printers"),
                             QJsonObject{{id(), keysNamed({QStringLiteral("name"), QStringLiteral("driver")})}}}});
    static const char *const odd[] = {"name", "session", "sessions", "printer", "printers", "lumo_config"};
    if (sweep.chance(15))
        putInto(QStringLiteral("time_zone"), QLatin1String(odd[sweep.below(6)]), value());
    if (sweep.chance(10))
        putInto(QStringLiteral("list"), QLatin1String(odd[sweep.below(6)]), directory(1));
    if (sweep.chance(5))
        putInto(QStringLiteral("network_printer"), QStringLiteral("printers"), QJsonObject{{id(), value()}});
}
