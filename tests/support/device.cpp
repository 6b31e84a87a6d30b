#include "support/device.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

namespace {

const QString tool_ = QStringLiteral(TOOL_PROGRAM);
const QString tessaro_ = QStringLiteral(TESSARO_PROGRAM);
const QString postActionFile = QStringLiteral("/tmp/last-apply-command");

void requireHarmlessReboot() {
    if (QStandardPaths::findExecutable(QStringLiteral("reboot")) != QLatin1String(TEST_PROGRAMS "/reboot"))
        qFatal("the search path must begin with %s", TEST_PROGRAMS);
}

} // namespace

QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Device::Device(const QString &json) {
    requireHarmlessReboot();
    for (const char *const name : {"hooks", "tmp"})
        QDir(folder.path()).mkdir(QLatin1String(name));
    environment = {
        {"TESSARO_REGISTRY", QFile::encodeName(path(QStringLiteral("registry.db")))},
        {"TESSARO_APPLY_DIR", QFile::encodeName(path(QStringLiteral("hooks")))},
        {"TESSARO_APPLY_SERVICE", QFile::encodeName(startable(QStringLiteral(APPLY_PROGRAM), folder.path()))},
        {"TESSARO", QFile::encodeName(startable(tessaro_, folder.path()))},
        {"TMPDIR", QFile::encodeName(path(QStringLiteral("tmp")))},
        {"DISPLAY", QByteArray()}};
    const Outcome loaded = tessaro({QStringLiteral("load"), json});
    if (loaded.status != 0)
        qFatal("%s", loaded.err.constData());
}

void Device::load(const QByteArray &json) const {
    const Outcome loaded = tessaro({QStringLiteral("load"), write(QStringLiteral("load.json"), json)});
    if (loaded.status != 0)
        qFatal("%s", loaded.err.constData());
}

QString Device::write(const QString &name, const QByteArray &contents) const {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qUtf8Printable(path(name)));
    return path(name);
}

QByteArray Device::read(const QString &name) const {
    return contentsOf(path(name));
}

void Device::addHook(const QString &section, const QByteArray &script) const {
    const QString file = write(QStringLiteral("hooks/") + section, "#!/bin/sh\n" + script + "\n");
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

Outcome Device::exportTo(const QString &file) const {
    return tool({QStringLiteral("-settings"), file, QStringLiteral("-get"), QStringLiteral("all")});
}

Outcome Device::importFrom(const QString &file, const QStringList &more) const {
    return tool(QStringList{QStringLiteral("-settings"), file, QStringLiteral("-set"), QStringLiteral("all")} + more);
}

Outcome Device::tool(const QStringList &arguments) const {
    return run(tool_, arguments, environment);
}

Program Device::startTool(const QStringList &arguments) const {
    return {tool_, arguments, environment};
}

Outcome Device::tessaro(const QStringList &arguments) const {
    return run(tessaro_, arguments, environment);
}

QByteArray Device::get(const QString &path) const {
    QByteArray value = tessaro({QStringLiteral("get"), path}).out;
    value.chop(1); // the line feed
    return value;
}

void Device::set(const QString &path, const QString &value) const {
    const Outcome outcome = tessaro({QStringLiteral("set"), path, value});
    if (outcome.status != 0)
        qFatal("%s", outcome.err.constData());
}

QByteArray Device::dump(const QString &path) const {
    return tessaro(QStringList(QStringLiteral("dump")) + (path.isEmpty() ? QStringList() : QStringList(path))).out;
}

QStringList Device::leftovers() const {
    QStringList left;
    if (!waitUntil([this] { return processes().isEmpty(); }, std::chrono::seconds(20)))
        left.append(QStringLiteral("a service"));
    if (tessaro({QStringLiteral("dump"), QStringLiteral("tmp/applying")}).out.simplified().replace(' ', "") != "{}")
        left.append(QStringLiteral("an apply key"));
    const QStringList semaphores = QDir(path(QStringLiteral("tmp"))).entryList(QDir::Files);
    if (!semaphores.isEmpty())
        left.append(QStringLiteral("a semaphore or a file: ") + semaphores.join(QLatin1Char(' ')));
    if (QFile::exists(postActionFile))
        left.append(postActionFile);
    return left;
}

QVector<pid_t> Device::processes() const {
    const QByteArray mark = "TESSARO_REGISTRY=" + environment.value("TESSARO_REGISTRY") + '\0';
    QVector<pid_t> found;
    const QStringList numbers = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &number : numbers) {
        if (contentsOf(QStringLiteral("/proc/") + number + QStringLiteral("/environ")).contains(mark))
            found.append(number.toInt());
    }
    return found;
}
