// SPDX-License-Identifier: MIT
#pragma once

#include "support/device.h"

#include <csignal>

/// The example device, and runs of the tool on it whose registry calls are recorded and can be made to fail.
class FaultyRuns {
public:
    /// With the arguments of the run but for "-settings", which stands first.
    explicit FaultyRuns(const QStringList &toolArguments)
        : arguments(QStringList(QStringLiteral("-settings")) + toolArguments) {}

    /// Puts the registry back as it was loaded.
    void reset() const { device.write(registry, pristine); }

    /// A run from there in which call number @p call, from 1 on, returns @p status; no call is 0.
    Outcome run(int call = 0, int status = 0) const {
        return start({{"FAULT_AT", QByteArray::number(call)}, {"FAULT_STATUS", QByteArray::number(status)}});
    }

    /// The calls of the last run, "operation path".
    QStringList calls() const {
        return QString::fromUtf8(device.read(log)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    /// What a run had committed before its call number @p call, as a dump of what the registry holds below `root`.
    QByteArray committedBefore(int call) const {
        if (start({{"FAULT_AT", QByteArray::number(call)}}).status != -SIGKILL)
            qFatal("the run ended before its call number %d", call);
        return settings();
    }

    /// What it holds there now.
    QByteArray settings() const {
        return device.read(registry) == pristine ? pristineSettings : device.dump(QStringLiteral("root"));
    }

    const QString registry = QStringLiteral("registry.db");
    Device device;

private:
    Outcome start(const Environment &fault) const {
        reset();
        QFile::remove(device.path(log));
        Environment environment = device.environment;
        environment.insert(fault);
        environment.insert("FAULT_LOG", QFile::encodeName(device.path(log)));
        environment.insert("LD_PRELOAD", FAULTY_CLIENT);
        environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0");
        return ::run(device.path(QStringLiteral("bin/quendarsettings")), arguments, environment);
    }

    const QString log = QStringLiteral("calls");
    const QStringList arguments;
    const QByteArray pristine = device.read(registry);
    const QByteArray pristineSettings = device.dump(QStringLiteral("root"));
};
