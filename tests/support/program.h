// SPDX-License-Identifier: MIT
/// Runs shell commands. QProcess::start is not used: where a process cannot be made it may end in a signal to all
/// others.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
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

/// A shell that runs commands, in a process group of its own. Ended with its group when the object goes.
class Program {
public:
    /// Variables of @p environment are added to this process's.
    Program(const QByteArray &commands, const Environment &environment);
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Kills its whole group. It must have been started without a leak check.
    void kill() const;

    /// Its end; what takes longer than two minutes, or two hours in a long sweep, is killed. What it printed is read
    /// from files, so that what it leaves running does not hold the caller.
    Outcome wait();

private:
    void end() const;

    QTemporaryDir folder;
    const bool isLeakChecked;
    pid_t process = -1;
    bool isReaped = false;
};

/// Whether @p condition came true within @p limit.
bool waitUntil(const std::function<bool()> &condition, std::chrono::seconds limit = std::chrono::seconds(30));

/// What a file holds; nothing when it cannot be read.
QByteArray contentsOf(const QString &path);
