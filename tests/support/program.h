// SPDX-License-Identifier: MIT
/// Starts programs and waits for them. QProcess::start is not used: where a process cannot be made it may end in a
/// signal to every process of the machine.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <chrono>
#include <functional>
#include <sys/types.h>

using Environment = QMap<QByteArray, QByteArray>;

/// The same, for programs that are to be killed: a leak check that is interrupted prints what no test can expect.
Environment withoutLeakCheck(Environment environment);

struct Outcome {
    int status = 0; // the exit status, or minus the signal that ended it
    QByteArray out;
    QByteArray err;
};

/// A program that runs, in a process group of its own. Ended with its group when the object goes.
class Program {
public:
    /// Variables of @p environment are added to this process's. A program that cannot be started ends with 127.
    Program(const QString &program, const QStringList &arguments, const Environment &environment = {});
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Kills its whole group. It must have been started without a leak check.
    void kill() const;

    /// Its end; a program that takes longer than two minutes is killed. What it printed is read from files, so that
    /// what it leaves running does not hold the caller.
    Outcome wait();

private:
    void end() const;

    QTemporaryDir folder;
    const bool isLeakChecked;
    pid_t process = -1;
    bool isReaped = false;
};

/// Runs a program to its end.
Outcome run(const QString &program, const QStringList &arguments, const Environment &environment = {});

/// Whether @p condition came true within @p limit.
bool waitUntil(const std::function<bool()> &condition, std::chrono::seconds limit = std::chrono::seconds(30));

/// What a file holds; nothing when it cannot be read.
QByteArray contentsOf(const QString &path);
