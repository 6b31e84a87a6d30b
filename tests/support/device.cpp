// SPDX-License-Identifier: MIT
#include "support/device.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>

namespace {

const QString postActionFile = QStringLiteral("/tmp/last-apply-command");

} // namespace

Device::Device(const QString &json) {
    if (QStandardPaths::findExecutable(QStringLiteral("reboot")) != QLatin1String(TEST_PROGRAMS "/reboot"))
        qFatal("the search path must begin with %s", TEST_PROGRAMS);
    qunsetenv("DISPLAY");
    for (const char *const name : {"bin", "hooks", "home", "tmp"})
        QDir(folder.path()).mkdir(QLatin1String(name));
    for (const char *const program : {TOOL_PROGRAM, CHANGE_PROGRAM, TESSARO_PROGRAM, APPLY_PROGRAM})
        addProgram(QFile::decodeName(program));
    const QByteArray here = QFile::encodeName(folder.path());
    environment = {{"PATH", TEST_PROGRAMS ":" + here + "/bin:" + qgetenv("PATH")},
                   {"TESSARO_REGISTRY", here + "/registry.db"},
                   {"TESSARO_APPLY_DIR", here + "/hooks"},
                   {"TESSARO_APPLY_SERVICE", here + "/bin/tessaro-apply"},
                   {"QUENDAR_CHANGE_SECRETS", "/dev/null"},
                   {"QUENDAR_CHANGE_STATE", here + "/state"},
                   {"TMPDIR", here + "/tmp"}};
    if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
        environment.insert("QUENDAR_CHANGE_PROGRAM", here + "/bin/quendar-change");
    load(contentsOf(json));
}

/// A program built for another architecture becomes a script that has it emulated.
void Device::addProgram(const QString &program) const {
    const QByteArray emulator = qgetenv("TEST_EMULATOR");
    const QString name = QStringLiteral("bin/") + program.section(QLatin1Char('/'), -1);
    if (emulator.isEmpty()) {
        QFile::link(program, path(name));
        return;
    }
    write(name, "#!/bin/sh\nexec " + emulator + " '" + QFile::encodeName(program) + "' \"$@\"\n");
    // also for another user
    QFile::setPermissions(path(name), QFile::Permissions(0x5555) | QFile::WriteOwner);
}

QString Device::write(const QString &name, const QByteArray &contents) const {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qUtf8Printable(path(name)));
    return path(name);
}

Program Device::start(const QByteArray &commands) const {
    return {"cd '" + QFile::encodeName(path(QStringLiteral("home"))) + "'\n" + commands, environment};
}

void Device::load(const QByteArray &json) const {
    write(QStringLiteral("load.json"), json);
    const Outcome loaded = run("tessaro load ../load.json");
    if (loaded.status != 0)
        qFatal("%s", loaded.err.constData());
}

QStringList Device::leftovers() const {
    QStringList left;
    if (!waitUntil([this] { return processes().isEmpty(); }, std::chrono::seconds(20)))
        left.append(QStringLiteral("a service"));
    if (dump("tmp/applying").contains(':'))
        left.append(QStringLiteral("an apply key"));
    const QStringList semaphores = QDir(path(QStringLiteral("tmp"))).entryList(QDir::Files);
    if (!semaphores.isEmpty())
        left.append(QStringLiteral("a semaphore or a file: ") + semaphores.join(QLatin1Char(' ')));
    if (QFile::exists(postActionFile))
        left.append(postActionFile);
    return left +
           QDir(path(QStringLiteral("state"))).entryList({QStringLiteral("journal.json"), QStringLiteral("*.new")});
}

QVector<pid_t> Device::processes() const {
    const QByteArray mark = "TESSARO_REGISTRY=" + environment.value("TESSARO_REGISTRY") + '\0';
    QVector<pid_t> found;
    const QStringList numbers = QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
    for (const QString &number : numbers)
        if (contentsOf(QStringLiteral("/proc/") + number + QStringLiteral("/environ")).contains(mark))
            found.append(number.toInt());
    return found;
}
