/// A registry of the test's own.
#pragma once

#include "registry/tessaroclient.h"
#include "support/program.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

/// Names a new folder's registry to this process and those it starts, for as long as it lives.
class TestRegistry {
public:
    TestRegistry() { qputenv("TESSARO_REGISTRY", QFile::encodeName(path())); }
    ~TestRegistry() { qunsetenv("TESSARO_REGISTRY"); }
    TestRegistry(const TestRegistry &) = delete;
    TestRegistry &operator=(const TestRegistry &) = delete;

    QString folder() const { return directory.path(); }
    QString path() const { return file(QStringLiteral("registry.db")); }
    QString file(const QString &name) const { return directory.filePath(name); }

    QString write(const QString &name, const QByteArray &text) const {
        QFile written(file(name));
        if (!written.open(QIODevice::WriteOnly) || written.write(text) != text.size()) {
            qFatal("cannot write %s", qPrintable(name));
        }
        return written.fileName();
    }

    Outcome tessaro(const QStringList &arguments) const { return run(QStringLiteral(TESSARO_PROGRAM), arguments); }

    Outcome load(const QByteArray &json) const {
        return tessaro({QStringLiteral("load"), write(QStringLiteral("tree.json"), json)});
    }

private:
    QTemporaryDir directory;
};

inline QString valueOf(TessaroClient &client, const QString &path) {
    QString value;
    client.Tessaro::get(path, value, RegParamValue, QString());
    return value;
}
