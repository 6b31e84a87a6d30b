// SPDX-License-Identifier: MIT
/// Runs of a program in which a registry call fails or ends them.
#pragma once

#include "support/device.h"

#include <csignal>

/// The example device, and runs of a command on it whose registry calls are recorded and can be made to fail.
class FaultyRuns {
public:
    explicit FaultyRuns(const QByteArray &commandLine) : command(commandLine) {}

    /// Puts the registry back as it was loaded.
    void reset() const { device.write(registry, pristine); }

    bool isPristine() const { return device.read(registry) == pristine; }

    /// A run from there in which call number @p call, from 1 on, returns @p status; no call is 0.
    Outcome run(int call = 0, int status = 0) const {
        return start("FAULT_AT=" + QByteArray::number(call) + " FAULT_STATUS=" + QByteArray::number(status));
    }

    /// The calls of the last run, "operation path".
    QStringList calls() const {
        return QString::fromUtf8(device.read(log)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    /// What a run had committed before its call number @p call, as a dump of what the registry holds below `root`.
    QByteArray committedBefore(int call) const {
        if (start("FAULT_AT=" + QByteArray::number(call)).status != -SIGKILL)
            qFatal("the run ended before its call number %d", call);
        return settings();
    }

    /// What it holds there now.
    QByteArray settings() const { return isPristine() ? pristineSettings : device.dump("root"); }

    const QString registry = QStringLiteral("registry.db");
    Device device;

private:
    Outcome start(const QByteArray &fault) const {
        reset();
        QFile::remove(device.path(log));
        const QByteArray library =
            " LD_PRELOAD='" FAULTY_CLIENT "' ASAN_OPTIONS=$ASAN_OPTIONS:verify_asan_link_order=0";
        return device.run(fault + " FAULT_LOG=../calls" + library + " exec " + command);
    }

    const QString log = QStringLiteral("calls");
    const QByteArray command;
    const QByteArray pristine = device.read(registry);
    const QByteArray pristineSettings = device.dump("root");
};
