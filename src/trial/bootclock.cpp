// SPDX-License-Identifier: MIT
#include "trial/bootclock.h"

#include <QtCore/QFile>

#include <ctime>

namespace quendar {

namespace {

QString readBootId() {
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().trimmed()) : QString();
}

/// No process lives through a restart.
const QString &bootId() {
    static const QString id = readBootId();
    return id;
}

} // namespace

BootMoment BootMoment::now() {
    timespec clock = {};
    ::clock_gettime(CLOCK_BOOTTIME, &clock);
    return {bootId(), std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::seconds(clock.tv_sec) +
                                                                            std::chrono::nanoseconds(clock.tv_nsec))};
}

} // namespace quendar
