// SPDX-License-Identifier: MIT
/// The registry from the command line:
///
///     tessaro load examples/device.json
///     tessaro get root/lumo-config-view/display/resolution
///     tessaro set root/lumo-config-view/display/resolution 1280x1024
///     tessaro dump root/lumo-config-view/display
#include "cli/fail.h"
#include "cli/load.h"
#include "cli/treejson.h"
#include "tessaro/path.h"
#include "tessaro/registryfile.h"
#include "tessaro/status.h"
#include "tessaro/utf8.h"
#include <tessaroclient.h>

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tessaro {

namespace {

using Arguments = QStringList;

struct Subcommand {
    const char *name;
    const char *arguments;
    int fewest;
    int most;
    void (*run)(const Arguments &);
};

void check(int status, const QString &path) {
    static const QMap<int, QString> reasons = {
        {NotFound, QStringLiteral("there is no such key")},
        {WrongKind, QStringLiteral("a directory, or no path")},
        {Unavailable, QStringLiteral("the registry cannot be read")},
        {CommitFailed, QStringLiteral("the registry cannot be written")},
    };
    if (status != Success)
        fail(QStringLiteral("\"%1\": %2").arg(path, reasons.value(status)));
}

void print(const QByteArray &text) {
    if (std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout) !=
            static_cast<size_t>(text.size()) ||
        std::fflush(stdout) != 0)
        fail(QStringLiteral("cannot write: ") + QString::fromLocal8Bit(std::strerror(errno)));
}

void load(const Arguments &arguments) {
    QFile file(arguments[0]);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("cannot open \"%1\": %2").arg(file.fileName(), file.errorString()));
    const QByteArray text = file.readAll();
    if (file.error() != QFile::NoError)
        fail(QStringLiteral("cannot read \"%1\": %2").arg(file.fileName(), file.errorString()));
    replaceRegistry(registryFile(), parseTree(text));
}

void dump(const Arguments &arguments) {
    const QString directory = arguments.value(0);
    Store store(registryFile());
    const SQLite::Transaction oneState = store.read();
    if (!arguments.isEmpty()) {
        const std::vector<Entry> above = store.list(parentOf(directory));
        const auto isTheDirectory = [&](const auto &entry) {
            return entry.first == directory && !entry.second.isKey();
        };
        if (!isPath(directory) || std::none_of(above.cbegin(), above.cend(), isTheDirectory))
            fail(QStringLiteral("\"%1\": there is no such directory").arg(directory));
    }
    print(QJsonDocument(readTree(store, directory)).toJson());
}

void get(const Arguments &arguments) {
    TessaroClient client;
    QString value;
    check(client.Tessaro::get(arguments[0], value, RegParamValue, QString()), arguments[0]);
    print(value.toUtf8() + '\n');
}

void set(const Arguments &arguments) {
    const QString &path = arguments[0];
    TessaroClient client;
    QString topmostNew = path;
    while (!parentOf(topmostNew).isEmpty() && client.contains(parentOf(topmostNew)) != Success)
        topmostNew = parentOf(topmostNew);
    if (topmostNew != path)
        client.create(parentOf(path), RegTypeString); // fails where another was faster, and is not needed then
    check(client.set(path, arguments[1], RegParamValue), path);
    check(client.commit(topmostNew), path); // with all that a new directory's template has brought
}

const Subcommand subcommands[] = {
    {"load", "FILE.json", 1, 1, load},
    {"dump", "[PATH]", 0, 1, dump},
    {"get", "PATH", 1, 1, get},
    {"set", "PATH VALUE", 2, 2, set},
};

int usage() {
    for (const Subcommand &subcommand : subcommands)
        std::fprintf(stderr, "usage: tessaro %s %s\n", subcommand.name, subcommand.arguments);
    return 1;
}

Arguments decode(int count, char **arguments) {
    Arguments decoded;
    for (int i = 0; i < count; ++i) {
        const QByteArray argument(arguments[i]);
        decoded.append(decodeUtf8(argument.constData(), argument.size()));
        if (decoded.last().toUtf8() != argument)
            fail(QStringLiteral("\"%1\" is not UTF-8").arg(decoded.last()));
    }
    return decoded;
}

int run(int argc, char **argv) {
    const int count = argc - 2;
    for (const Subcommand &subcommand : subcommands) {
        if (count >= subcommand.fewest && count <= subcommand.most && std::strcmp(argv[1], subcommand.name) == 0) {
            subcommand.run(decode(count, argv + 2));
            return 0;
        }
    }
    return usage();
}

} // namespace

} // namespace tessaro

int main(int argc, char **argv) {
    try {
        return tessaro::run(argc, argv);
    } catch (const SQLite::Exception &error) {
        std::fprintf(stderr, "tessaro: registry \"%s\": %s\n", tessaro::registryFile().c_str(), error.what());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "tessaro: %s\n", error.what());
    }
    return 1;
}
