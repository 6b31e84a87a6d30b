#pragma once

#include "support/device.h"

/// The example device, and runs of the tool on it whose registry calls are recorded and can be made to fail.
class FaultyRuns {
public:
    /// With the arguments of the run but for the settings file, which stands first.
    explicit FaultyRuns(const QStringList &arguments);

    /// Puts the registry back as it was loaded.
    void reset() const;

    /// A run from there in which call number @p call, from 1 on, returns @p status; no call is 0.
    Outcome run(int call = 0, int status = 0) const;

    /// The calls of the last run, "operation path".
    QStringList calls() const;

    /// What a run had committed below `root` before its call number @p call, as a dump.
    QByteArray committedBefore(int call) const;

    /// What the registry holds there now.
    QByteArray settings() const;

    Device device;

private:
    Outcome start(const Environment &fault) const;

    const QStringList arguments;
    QByteArray pristine;
    QByteArray pristineSettings;
};
