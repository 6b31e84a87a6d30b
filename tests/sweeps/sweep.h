// SPDX-License-Identifier: MIT
/// The extent of a sweep, and its random numbers.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QRandomGenerator>
#include <QtCore/QString>

/// How far a sweep goes, by the variable SWEEP: "long" is all of it, "tenth" every tenth case of those that are
/// numbered, otherwise a short share. What is random is the same each time, or new each time in a long one;
/// SWEEP_SEED sets the seed, which is printed.
class Sweep {
public:
    static bool isLong() { return qgetenv("SWEEP") == "long"; }
    static bool isTenth() { return qgetenv("SWEEP") == "tenth"; }

    static int cases(int few, int all) { return isLong() ? all : few; }

    Sweep() { qInfo("seed: %u (SWEEP_SEED)", seed); }

    /// Not less than 0, below @p end.
    int below(int end) { return static_cast<int>(random.bounded(end)); }

    bool chance(int percent) { return below(100) < percent; }

private:
    const uint seed = qEnvironmentVariableIsSet("SWEEP_SEED") ? qEnvironmentVariable("SWEEP_SEED").toUInt()
                      : isLong()                              ? QRandomGenerator::global()->generate()
                                                              : 1;
    QRandomGenerator random{seed};
};
