// SPDX-License-Identifier: MIT
#include "sweeps/trieddevice.h"

#include "sweeps/comparison.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>
#include <QtCore/QUuid>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>
#include <new>
#include <string>

namespace {

const QString takenUp = QStringLiteral("taken-up/");

// The last of two at the same time, of which one may have been left by a kill, takes up what stands there then.
const char hook[] = "#!/bin/sh\n"
                    "cd \"$TMPDIR/../taken-up\"; exec 9>../taken-up.lock; flock 9\n"
                    "if [ -x ../hooks/more ]; then ../hooks/more \"$@\"; fi; status=$?\n"
                    "echo \"${1##*/}\" >>../applied; tessaro dump \"$1\" >\"${1##*/}\"; exit $status\n";

QByteArray fileName(const QString &path) {
    return QFile::encodeName(path);
}

/// Whether a process still holds its files: it does for a moment after it has lost its memory.
bool isRunning(pid_t process) {
    const QByteArray status = contentsOf(QStringLiteral("/proc/%1/status").arg(process));
    return !status.isEmpty() && !status.contains("\nState:\tZ");
}

} // namespace

TriedDevice::TriedDevice() : control(device.path(QStringLiteral("world/control"))) {
    for (const char *const folder : {"world", "taken-up"})
        QDir(device.path({})).mkdir(QLatin1String(folder));
    if (!control.open(QIODevice::ReadWrite) || !control.resize(sizeof(OtherWorld)))
        qFatal("cannot write %s", qUtf8Printable(control.fileName()));
    world = new (control.map(0, sizeof(OtherWorld))) OtherWorld{};
    device.environment.insert("OTHERWORLD", fileName(device.path(QStringLiteral("world"))));
    device.environment.insert("LD_PRELOAD", OTHER_WORLD);
    device.environment.insert("LC_ALL", "C.UTF-8");
    device.environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0:detect_leaks=0");
    QFile::setPermissions(device.write(QStringLiteral("hooks/default"), hook), QFile::ReadOwner | QFile::ExeOwner);
    pristine = device.read(QStringLiteral("registry.db"));
    reset();
}

void TriedDevice::load(const QByteArray &json) {
    device.load(json);
    pristine = device.read(QStringLiteral("registry.db"));
    reset();
}

void TriedDevice::reset() {
    count("nothing");
    world->bootClockAhead = 0;
    world->wallClockAhead = 0;
    writeBootId();
    device.write(QStringLiteral("registry.db"), pristine);
    device.write(QStringLiteral("applied"), {});
    QFile::remove(device.path(QStringLiteral("hooks/more")));
    QDir(device.path(QStringLiteral("state"))).removeRecursively();
    for (const QString &folder : {takenUp, QStringLiteral("tmp/")}) {
        const QStringList files = QDir(device.path(folder)).entryList(QDir::Files);
        for (const QString &file : files)
            QFile::remove(device.path(folder + file));
    }
}

void TriedDevice::writeBootId() const {
    device.write(QStringLiteral("world/boot_id"), QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + '\n');
}

QByteArray TriedDevice::settings() const {
    const QByteArray dump = device.dump();
    return dump.left(dump.indexOf("\n    \"tmp\": ")); // it comes last
}

QJsonObject TriedDevice::status() const {
    return parsed(device.run("quendar-change status --json").out);
}

bool TriedDevice::isClosed() const {
    static const QStringList states = {QStringLiteral("none"), QStringLiteral("confirmed"), QStringLiteral("reverted"),
                                       QStringLiteral("failed")};
    return states.contains(word(status(), "state"));
}

void TriedDevice::count(const QByteArray &pattern) {
    strike(pattern, OtherWorld::None, INT_MAX);
}

void TriedDevice::strike(const QByteArray &pattern, OtherWorld::Deed deed, int number, bool isOnce) {
    world->deed = OtherWorld::None;
    QFile::remove(device.path(QStringLiteral("world/calls")));
    qstrncpy(world->counted, pattern.constData(), sizeof world->counted);
    world->calls = 0;
    world->first = number;
    world->last = isOnce ? number : INT_MAX;
    world->deed = deed;
}

QStringList TriedDevice::calls() const {
    return QString::fromUtf8(device.read(QStringLiteral("world/calls"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void TriedDevice::restart() {
    QVector<pid_t> killed;
    const bool isOff = waitUntil([&] {
        const auto all = device.processes();
        for (const pid_t process : all)
            ::kill(process, SIGKILL);
        killed += all;
        return all.isEmpty() && std::none_of(killed.cbegin(), killed.cend(), isRunning);
    });
    if (!isOff)
        qFatal("processes cannot be killed");
    writeBootId();
    timespec sinceStart = {};
    ::clock_gettime(CLOCK_BOOTTIME, &sinceStart);
    world->bootClockAhead = 20 - sinceStart.tv_sec;
}

bool TriedDevice::finish() {
    world->deed = OtherWorld::None;
    advance(7200);
    device.run("quendar-change resume");
    const auto isFinished = [this] {
        if (isClosed())
            return true;
        if (!status().value(QLatin1String("watched")).toBool()) // a guard may have been dying when it was looked for
            device.run("quendar-change resume");
        return false;
    };
    if (waitUntil(isFinished, std::chrono::seconds(20)))
        return true;
    (void)!system("ps axfo pid,ppid,pgid,stat,wchan,args >&2; cat /proc/locks >&2");
    for (auto p : device.processes())
        (void)!system(("ls -la /proc/" + std::to_string(p) + "/fd >&2").c_str());
    return false;
}

QStringList TriedDevice::complaints() const {
    QStringList wrong =
        device.leftovers().filter(QRegularExpression(QStringLiteral("^(?!journal.json|state.json.new)")));
    const QJsonObject last = status();
    const bool isKept = word(last, "state") == QLatin1String("confirmed");
    QStringList failed;
    const auto results = last.value(isKept ? QLatin1String("sections") : QLatin1String("put_back_sections")).toArray();
    for (const auto &result : results)
        if (word(result.toObject(), "result") != QLatin1String("applied"))
            failed.append(word(result.toObject(), "name"));
    const QStringList sections = QDir(device.path(takenUp)).entryList(QDir::Files);
    for (const QString &section : sections)
        if (!failed.contains(section) &&
            device.read(takenUp + section) != device.dump("root/lumo-config-view/" + section.toUtf8()))
            wrong.append(section + QStringLiteral(" is not as it was applied last"));
    return wrong;
}

QStringList TriedDevice::complaints(const QByteArray &before, const QByteArray &after) const {
    const QByteArray now = settings();
    const QString state = word(status(), "state");
    QStringList wrong = complaints();
    if (now != (state == QLatin1String("confirmed") ? after : before))
        wrong.append(state + (now == before ? QStringLiteral(", though the settings are those before")
                              : now == after
                                  ? QStringLiteral(", though the settings are those after")
                                  : QStringLiteral(", and the settings are neither those before nor after")));
    return wrong;
}

void TriedDevice::addHook(const QByteArray &script) const {
    const QString more = device.write(QStringLiteral("hooks/more"), "#!/bin/sh\n" + script);
    QFile::setPermissions(more, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QStringList TriedDevice::applied() const {
    return QString::fromUtf8(device.read(QStringLiteral("applied"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
