#pragma once

#include "support/program.h"

#include <QtCore/QTemporaryDir>

/// A device of a test's own: a folder with its registry, apply hooks and files, on which the built programs are run.
/// Ends the test program where `reboot` is not the harmless one.
class Device {
public:
    /// A registry loaded from a JSON file; the example device unless another is named.
    explicit Device(const QString &json = QStringLiteral(EXAMPLES "/device.json"));

    QString path(const QString &name) const { return folder.filePath(name); }
    /// Replaces the registry by a JSON tree.
    void load(const QByteArray &json) const;

    QString write(const QString &name, const QByteArray &contents) const;
    QByteArray read(const QString &name) const;

    /// Makes the apply hook of a section, or "default": a shell script, to which $TESSARO is the `tessaro` program.
    void addHook(const QString &section, const QByteArray &script) const;

    Outcome exportTo(const QString &file) const;
    Outcome importFrom(const QString &file, const QStringList &more = {}) const;
    Outcome tool(const QStringList &arguments) const;
    Program startTool(const QStringList &arguments) const;
    Outcome tessaro(const QStringList &arguments) const;

    QByteArray get(const QString &path) const;
    void set(const QString &path, const QString &value) const;
    QByteArray dump(const QString &path = {}) const;

    /// What an import may not leave behind, each in words; empty when all is gone within a few seconds.
    QStringList leftovers() const;

    /// Processes whose registry is this device's.
    QVector<pid_t> processes() const;

    Environment environment;

private:
    QTemporaryDir folder;
};

QByteArray contentsOf(const QString &path);
