/// What a client may do, told as transcripts: `OPERATION PATH [VALUE] -> STATUS [RESULT]`, one step after another. U
/// stands for a UUID, `other` for a second client, and a listing marks its directories with a "/".
#include "testregistry.h"

#include <QtTest/QtTest>

namespace {

const char *const tree = R"({
    "root": {"dir": {"a": "1", "b": "2", "sub": {"c": "3"}}, "empty": {}, "key": "text"},
    "templates": {"sessions": {"{UUID}": {"name": "new", "more": {"x": "y"}, "printers": {"{UUID}": {"model": "m"}}}}}
})";

QString step(TessaroClient &client, const QString &operation, const QString &path, const QString &value) {
    if (operation == QLatin1String("get")) {
        QString result;
        const int status = client.Tessaro::get(path, result, RegParamValue, QString());
        return QString::number(status) + (status == 0 ? QLatin1Char(' ') + result : QString());
    }
    if (operation == QLatin1String("list")) {
        QMap<QString, _RegNodeType> children;
        const int status = client.get(path, children, RegParamValue, QString());
        QStringList names;
        for (auto child = children.cbegin(); child != children.cend(); ++child) {
            names.append(child.key().section(QLatin1Char('/'), -1) +
                         (*child == RegNodeDir ? QStringLiteral("/") : QString()));
        }
        return QString::number(status) +
               (names.isEmpty() ? QString() : QLatin1Char(' ') + names.join(QLatin1Char(',')));
    }
    const int status = operation == QLatin1String("contains") ? client.contains(path)
                       : operation == QLatin1String("create") ? client.create(path, RegTypeString)
                       : operation == QLatin1String("set")    ? client.set(path, value, RegParamValue)
                       : operation == QLatin1String("del")    ? client.del(path)
                       : operation == QLatin1String("commit") ? client.commit(path)
                                                              : client.rollback(path);
    return QString::number(status);
}

QString perform(const QString &transcript) {
    TessaroClient own;
    TessaroClient other;
    QStringList performed;
    for (const QString &line : transcript.split(QStringLiteral(" | "))) {
        const QString call = line.section(QStringLiteral(" -> "), 0, 0);
        QStringList words = call.split(QLatin1Char(' '));
        const bool isOther = words.first() == QLatin1String("other");
        if (isOther) {
            words.removeFirst();
        }
        QString path = words.value(1);
        path.replace(QLatin1Char('U'), QStringLiteral("{0f1e2d3c-4b5a-6c7d-8e9f-a0b1c2d3e4f5}"));
        performed.append(call + QStringLiteral(" -> ") +
                         step(isOther ? other : own, words.first(), path, words.value(2)));
    }
    return performed.join(QStringLiteral(" | "));
}

} // namespace

class ClientRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void transcript_data();
    void transcript();
    void valueComesBack_data();
    void valueComesBack();
    void loadIsSeenByAnOpenClient();
};

void ClientRulesTest::transcript_data() {
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *expected) { QTest::newRow(name) << QString::fromUtf8(expected); };
    row("directories and keys are read",
        "list root -> 0 dir/,empty/,key | list root/key -> 0 text | get root/dir/a -> 0 1"
        " | get root/dir -> 2 | list root/empty -> 0 | contains root/dir/sub/c -> 0");
    row("what is not there is no failure of a listing", "list root/none -> 1 | list root/none/x -> 1 | get root/none "
                                                        "-> 1 | contains root/none -> 1 | del root/none -> 1");
    row("below a key there is nothing", "list root/key/x -> 1 | contains root/key/x -> 1 | get root/key/x -> 1"
                                        " | set root/key/x v -> 1 | create root/key/x -> 2 | list root/key -> 0 text");
    row("malformed paths are refused",
        "get  -> 2 | list / -> 2 | contains root/ -> 2 | set /root v -> 2 | create root//x -> 2 | del root/dir/ -> 2"
        " | commit  -> 2 | commit root/ -> 2 | rollback root/ -> 2 | rollback  -> 0");
    row("a change is its client's own until it is committed",
        "set root/key new -> 0 | get root/key -> 0 new | other get root/key -> 0 text | commit root/key -> 0"
        " | other get root/key -> 0 new | commit root -> 0");
    row("another's commit is seen although all was read before",
        "get root/dir/a -> 0 1 | list root/dir -> 0 a,b,sub/ | other set root/dir/a x -> 0 | other del root/dir/b -> 0"
        " | other commit root -> 0 | get root/dir/a -> 0 x | list root/dir -> 0 a,sub/"
        " | set root/dir/a y -> 0 | commit root -> 0 | other get root/dir/a -> 0 y | get root/dir/a -> 0 y");
    row("a new key needs a directory, and a directory takes no value",
        "set root/empty/k v -> 0 | list root/empty -> 0 k | set root/none/k v -> 1 | set root/empty v -> 2"
        " | set root/dir v -> 2 | commit root -> 0 | other get root/empty/k -> 0 v");
    row("commit takes its path and what is below, and leaves the rest",
        "set root/dir/a x -> 0 | set root/dir/sub/c y -> 0 | set root/key z -> 0 | commit root/dir/sub -> 0"
        " | other get root/dir/sub/c -> 0 y | other get root/dir/a -> 0 1 | get root/dir/a -> 0 x"
        " | commit root/dir -> 0 | other get root/dir/a -> 0 x | other get root/key -> 0 text | get root/key -> 0 z");
    row("a path that begins alike is not below",
        "set root/d 1 -> 0 | set root/dir/a x -> 0 | commit root/d -> 0 | other get root/dir/a -> 0 1 | del root/d -> 0"
        " | get root/dir/a -> 0 x | commit root/d -> 0 | other list root -> 0 dir/,empty/,key");
    row("rollback drops its path and what is below",
        "set root/dir/a x -> 0 | del root/dir/sub -> 0 | set root/key z -> 0 | rollback root/dir -> 0"
        " | get root/dir/a -> 0 1 | list root/dir -> 0 a,b,sub/ | get root/key -> 0 z | rollback  -> 0"
        " | get root/key -> 0 text | commit root -> 0 | other get root/key -> 0 text");
    row("create makes missing parents, which stay",
        "create tmp/applying/k -> 0 | list tmp -> 0 applying/ | set tmp/applying/k v -> 0 | other contains tmp -> 1"
        " | commit tmp/applying/k -> 0 | other get tmp/applying/k -> 0 v | del tmp/applying/k -> 0"
        " | commit tmp/applying/k -> 0 | other list tmp -> 0 applying/ | other del tmp -> 0 | other commit tmp -> 0"
        " | contains tmp -> 1");
    row("create of what exists changes nothing",
        "create root/dir -> 2 | create root/key -> 2 | list root/dir -> 0 a,b,sub/"
        " | get root/key -> 0 text | commit root -> 0");
    row("an empty new node becomes a key by its first value",
        "create root/n -> 0 | list root/n -> 0 | set root/n v -> 0 | set root/n w -> 0 | commit root/n -> 0"
        " | other get root/n -> 0 w");
    row("a new node that was committed or has content is a directory",
        "create root/n -> 0 | commit root/n -> 0 | set root/n v -> 2 | create root/m/x -> 0 | set root/m v -> 2"
        " | del root/m/x -> 0 | set root/m v -> 0 | get root/m -> 0 v");
    row("del takes the subtree and what is pending in it",
        "set root/dir/sub/new v -> 0 | del root/dir -> 0 | contains root/dir/sub/c -> 1 | list root -> 0 empty/,key"
        " | set root/dir/a v -> 1 | other contains root/dir/a -> 0 | commit root/dir -> 0 | other list root -> 0 "
        "empty/,key"
        " | other contains root/dir/sub/c -> 1");
    row("what is made again after del starts empty",
        "del root/dir -> 0 | create root/dir/sub -> 0 | list root/dir -> 0 sub/ | list root/dir/sub -> 0"
        " | set root/dir/sub/d v -> 0 | other list root/dir -> 0 a,b,sub/ | commit root/dir -> 0"
        " | other list root/dir -> 0 sub/ | other list root/dir/sub -> 0 d");
    row("a deleted directory comes back as a key",
        "del root/dir -> 0 | create root/dir -> 0 | set root/dir v -> 0 | commit root -> 0 | other get root/dir -> 0 v"
        " | other contains root/dir/a -> 1");
    row("a commit below a pending removal outlives it",
        "del root/dir -> 0 | create root/dir/sub/n -> 0 | commit root/dir/sub -> 0 | other list root/dir/sub -> 0 n/"
        " | other list root/dir -> 0 a,b,sub/ | list root/dir -> 0 sub/ | commit root/dir -> 0"
        " | other list root/dir -> 0 sub/ | other list root/dir/sub -> 0 n/");
    row("a pending value whose key is gone meanwhile is made again, parents too",
        "set root/dir/sub/c x -> 0 | other del root/dir -> 0 | other commit root -> 0 | commit root -> 0"
        " | other get root/dir/sub/c -> 0 x | other list root/dir -> 0 sub/");
    row("the last commit wins over what has become of another kind",
        "set root/dir/a x -> 0 | set root/empty/k v -> 0 | other del root/dir -> 0 | other create root/dir -> 0"
        " | other set root/dir v -> 0 | other create root/empty/k/l -> 0 | other commit root -> 0 | commit root -> 0"
        " | other get root/dir/a -> 0 x | other get root/empty/k -> 0 v | other contains root/empty/k/l -> 1");
    row("a new session is filled from its template",
        "create root/sessions/U -> 0 | list root/sessions/U -> 0 more/,name,printers/ | list root/sessions/U/printers "
        "-> 0"
        " | get root/sessions/U/more/x -> 0 y | set root/sessions/U v -> 2 | set root/sessions/U/name n -> 0"
        " | commit root/sessions/U -> 0 | other get root/sessions/U/name -> 0 n | other get root/sessions/U/more/x -> "
        "0 y");
    row("a template within a template, and a new directory as a parent",
        "create root/sessions/U/printers/U -> 0 | get root/sessions/U/name -> 0 new"
        " | get root/sessions/U/printers/U/model -> 0 m | create root/sessions/U/printers/U -> 2");
    row("a name that is no UUID or the null one, and a place without template: empty",
        "create root/sessions/mine -> 0 | list root/sessions/mine -> 0 | create root/U -> 0 | list root/U -> 0"
        " | create root/sessions/{00000000-0000-0000-0000-000000000000} -> 0"
        " | list root/sessions/{00000000-0000-0000-0000-000000000000} -> 0");
}

void ClientRulesTest::transcript() {
    QFETCH(const QString, expected);
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    QCOMPARE(perform(expected), expected);
}

void ClientRulesTest::valueComesBack_data() {
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("status");
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("blanks and line ends") << QStringLiteral(" a\r\n\tb ") << 0;
    QTest::newRow("a mark at the start") << QString(2, QChar(0xFEFF)) + QStringLiteral("é") << 0;
    QTest::newRow("NUL") << QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b")) << 0;
    QTest::newRow("beyond the first plane, and noncharacters")
        << QStringLiteral("\U0001F600\U0010FFFF\uFFFF\uFFFE") << 0;
    QTest::newRow("a megabyte") << QString(1 << 20, QLatin1Char('x')) << 0;
    QTest::newRow("half a character") << QString(QChar(0xD83D)) << 2;
}

void ClientRulesTest::valueComesBack() {
    QFETCH(const QString, value);
    QFETCH(const int, status);
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    TessaroClient client;
    QCOMPARE(client.set(QStringLiteral("root/key"), value, RegParamValue), status);
    QCOMPARE(client.commit(QStringLiteral("root")), 0);
    TessaroClient reader;
    QCOMPARE(valueOf(reader, QStringLiteral("root/key")), status == 0 ? value : QStringLiteral("text"));
    QCOMPARE(client.contains(QStringLiteral("root/") + (status == 0 ? QStringLiteral("key") : value)), status);
}

void ClientRulesTest::loadIsSeenByAnOpenClient() {
    const TestRegistry registry;
    QCOMPARE(registry.load(tree).err, QByteArray());
    TessaroClient client;
    QCOMPARE(valueOf(client, QStringLiteral("root/dir/a")), QStringLiteral("1"));
    QCOMPARE(registry.load(R"({"root": {"dir": {"a": "loaded"}}})").err, QByteArray());
    QCOMPARE(valueOf(client, QStringLiteral("root/dir/a")), QStringLiteral("loaded"));
    QCOMPARE(client.contains(QStringLiteral("templates")), 1);
}

QTEST_GUILESS_MAIN(ClientRulesTest)
#include "clientrulestest.moc"
