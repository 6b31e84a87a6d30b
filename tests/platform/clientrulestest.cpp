// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "support/stories.h"
#include <tessaroclient.h>

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

#include <functional>
#include <map>

namespace {

/// The status, then a key's value or a directory's children, the directories among them with a "/".
QString answer(TessaroClient &client, const QString &operation, const QString &path, const QString &value) {
    QString text;
    QMap<QString, _RegNodeType> children;
    const QMap<QString, std::function<int()>> operations = {
        {QStringLiteral("get"), [&] { return client.Tessaro::get(path, text, RegParamValue, QString()); }},
        {QStringLiteral("list"), [&] { return client.get(path, children, RegParamValue, QString()); }},
        {QStringLiteral("contains"), [&] { return client.contains(path); }},
        {QStringLiteral("create"), [&] { return client.create(path, RegTypeString); }},
        {QStringLiteral("set"), [&] { return client.set(path, value, RegParamValue); }},
        {QStringLiteral("del"), [&] { return client.del(path); }},
        {QStringLiteral("commit"), [&] { return client.commit(path); }},
        {QStringLiteral("apply"), [&] { return client.requestApply(value, path); }},
        {QStringLiteral("rollback"), [&] { return client.rollback(path); }}};
    QStringList words = {QString::number(operations[operation]())};
    if (!text.isNull())
        words.append(text);
    for (auto child = children.cbegin(); child != children.cend(); ++child)
        words.append(child.key().section(QLatin1Char('/'), -1) + QLatin1String(*child == RegNodeDir ? "/" : ""));
    return words.join(QLatin1Char(' '));
}

QByteArray compact(const QByteArray &json) {
    return QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact);
}

} // namespace

/// What a client may do: rules.txt.
class ClientRulesTest : public QObject {
    Q_OBJECT

    const Device device;

private Q_SLOTS:
    void initTestCase() { qputenv("TESSARO_REGISTRY", device.environment["TESSARO_REGISTRY"]); }

    void clientsFollowTheRules_data() { addStories(QStringLiteral(STORIES "/rules.txt"), "registry steps after"); }

    void clientsFollowTheRules() {
        QFETCH(const Story, story);
        const QByteArray registry = story.text("registry").toUtf8();
        device.load(registry);
        std::map<QString, TessaroClient> clients;
        QStringList played;
        for (const QString &line : story.lines("steps")) {
            const QString call = line.section(QLatin1String(" -> "), 0, 0);
            const QStringList words = call.split(QLatin1Char(' '));
            played.append(
                call + QLatin1String(" -> ") +
                answer(clients[words[0]], words[1], words[2], QStringList(words.mid(3)).join(QLatin1Char(' '))));
        }
        QCOMPARE(played, story.lines("steps"));
        const QByteArray after = story.text("after").toUtf8();
        QCOMPARE(compact(device.dump()), compact(after.isEmpty() ? registry : after));
    }

    void textComesBackAsItWas() {
        const QString key = QStringLiteral("root/key");
        device.load(R"({"root": {}})");
        for (const QString &text :
             {QString(), QStringLiteral(" \r\n\t\u0000\uFEFF\u00E9\U0001F600\U0010FFFF\uFFFF\uFFFE "),
              QStringLiteral("\uFEFF\uFEFF"), QString(1 << 20, QLatin1Char('x'))}) {
            TessaroClient writer;
            TessaroClient reader;
            QString value = key;
            QCOMPARE(writer.set(key, text, RegParamValue), 0);
            QCOMPARE(writer.commit(key), 0);
            QCOMPARE(reader.Tessaro::get(key, value, RegParamValue, QString()), 0);
            QCOMPARE(value, text);
            QCOMPARE(writer.set(key, QChar(0xD83D), RegParamValue), 2);
            QCOMPARE(writer.contains(QStringLiteral("root/") + QChar(0xD83D)), 2);
        }
    }
};

QTEST_GUILESS_MAIN(ClientRulesTest)

#include "clientrulestest.moc"
