// SPDX-License-Identifier: MIT
/// A device on which changes are tried, killed and put back.
#pragma once

#include "support/device.h"
#include "sweeps/otherworld.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>

/// A device whose processes live in a world of the test's own. Each section that is applied is taken up: a file of its
/// name in the folder `taken-up` then holds what the registry did.
class TriedDevice {
public:
    TriedDevice();

    /// As it was loaded first, or since the last call of `load`, with no change ever made, in a quiet world.
    void reset();
    void load(const QByteArray &json);

    /// Until the next reset, runs a shell script before a section is taken up, whose exit status is then the hook's.
    void addHook(const QByteArray &script) const;

    /// The registry without `tmp`.
    QByteArray settings() const;

    QJsonObject status() const;
    bool isClosed() const;

    /// Counts writing calls from now on.
    void count(const QByteArray &pattern);
    /// Likewise, and does something at the call number @p number, from 1 on, or from there on.
    void strike(const QByteArray &pattern, OtherWorld::Deed deed, int number = 1, bool isOnce = true);
    bool hasStruck() const { return world->calls >= world->first; }
    /// Those that were counted, each as a line.
    QStringList calls() const;

    void advance(int seconds) { world->bootClockAhead += seconds; }

    /// Ends all processes and begins anew, as a restart does.
    void restart();

    /// Lets all time go by, calls `resume`, and waits until no change is open any more.
    bool finish();

    /// What is wrong when no change is open any more: each section must be taken up as it stands in the registry,
    /// unless its result says otherwise, and nothing is left behind.
    QStringList complaints() const;

    /// Likewise; and the registry must be the one that the last change's state says.
    QStringList complaints(const QByteArray &before, const QByteArray &after) const;

    /// The names of the sections that were taken up since the last reset, in this order.
    QStringList applied() const;

    Device device;
    OtherWorld *world = nullptr;

private:
    void writeBootId() const;

    QFile control;
    QByteArray pristine;
};
