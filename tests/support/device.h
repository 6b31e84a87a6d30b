// SPDX-License-Identifier: MIT
#pragma once

#include "support/program.h"

#include <QtCore/QTemporaryDir>

/// A device of a test's own: a folder with its registry, apply hooks and files, on which the built programs are run.
class Device {
public:
    /// A registry loaded from a JSON file; the example device unless another is named.
    explicit Device(const QString &json = QStringLiteral(EXAMPLES "/device.json"));

    QString path(const QString &name) const { return folder.filePath(name); }
    /// Replaces the registry by a JSON tree.
    void load(const QByteArray &json) const;

    QString write(const QString &name, const QByteArray &contents) const;
    QByteArray read(const QString &name) const;

    /// Makes the apply hook of a section, or "default": a shell script.
    void addHook(const QString &section, const QByteArray &script) const;

    Outcome exportTo(const QString &file) const;
    Outcome importFrom(const QString &file) const;
    /// Starts the tool with one of its commands, "-get" or "-set", for all settings.
    Program startTool(const QString &file, const QString &command) const;

    /// What the registry holds at and below a directory, as JSON.
    QByteArray dump(const QString &path = {}) const;

    /// What an import may not leave behind, each in words; empty when all is gone within a few seconds.
    QStringList leftovers() const;

    /// Processes whose registry is this device's.
    QVector<pid_t> processes() const;

    /// Of the programs of the device: they have no display, and find each other and a harmless `reboot` in the path.
    Environment environment;

private:
    void addProgram(const QString &program) const;

    QTemporaryDir folder;
};
