// SPDX-License-Identifier: MIT
/// The registry of the unit tests, in memory.
#pragma once

#include <tessaroclient.h>

#include <QtCore/QHash>
#include <QtCore/QStringList>

/// A registry in memory that every client of the test program works on. Records each call, in order, as
/// "operation path" or "operation path = value", and answers with the status that the test has set for it.
class ScriptedRegistry {
public:
    /// Makes this the registry of the clients, in the place of an earlier one.
    ScriptedRegistry();
    ~ScriptedRegistry();
    ScriptedRegistry(const ScriptedRegistry &) = delete;
    ScriptedRegistry &operator=(const ScriptedRegistry &) = delete;

    /// The directories above are made too.
    void addKey(const QString &path, const QString &value);
    void addDirectory(const QString &path);
    /// Adds "path = value" as a key and "path/" as a directory.
    void add(const QStringList &lines);
    void remove(const QString &path);

    /// The recorded calls but for those that only read.
    QStringList writes() const;

    QHash<QString, QString> keys;
    QHash<QString, QMap<QString, _RegNodeType>> directories;
    QStringList calls;
    QHash<QString, int> statuses; // by "operation path"
};
