// SPDX-License-Identifier: MIT
/// The device that tests run the built programs on.
#pragma once

#include "support/program.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// A device of a test's own: a folder with its registry, apply hooks, and files in the folder `home`.
class Device {
public:
    /// A registry loaded from a JSON file; the example device unless another is named.
    explicit Device(const QString &json = QStringLiteral(EXAMPLES "/device.json"));

    QString path(const QString &name) const { return folder.filePath(name); }
    QString write(const QString &name, const QByteArray &contents) const;
    QByteArray read(const QString &name) const { return contentsOf(path(name)); }

    /// Starts a shell with commands, typed in its home.
    Program start(const QByteArray &commands) const;
    Outcome run(const QByteArray &commands) const { return start(commands).wait(); }

    /// Replaces the registry by a JSON tree.
    void load(const QByteArray &json) const;

    /// What the registry holds at and below a directory, as JSON.
    QByteArray dump(const QByteArray &path = {}) const { return run("tessaro dump " + path).out; }

    /// What an import or a change may not leave behind, each in words; empty when all is gone within a few seconds.
    QStringList leftovers() const;

    /// Processes whose registry is this device's.
    QVector<pid_t> processes() const;

    /// Of the programs of the device: they have no display, and find each other and a harmless `reboot` in the path.
    Environment environment;

private:
    void addProgram(const QString &program) const;

    QTemporaryDir folder;
};
