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

struct Outcome {
    int status = 0; // the exit status, or minus the signal that ended it
    QByteArray out;
    QByteArray err;
};

/// A program that runs, in a process group of its own. Ended with its group when the object goes.
class Program {
public:
    /// Variables of @p environment are added to this process's; an empty value that is null takes one away.
    Program(const QString &program, const QStringList &arguments, const Environment &environment = {});
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    pid_t id() const { return process; }
    void kill() const;

    /// Its end; a program that takes longer than @p limit is killed. What it printed is read from files, so that what
    /// it leaves running does not hold the caller.
    Outcome wait(std::chrono::seconds limit = std::chrono::seconds(120));

private:
    QTemporaryDir folder;
    pid_t process = -1;
    bool isReaped = false;
};

/// Runs a program to its end.
Outcome run(const QString &program, const QStringList &arguments, const Environment &environment = {},
            std::chrono::seconds limit = std::chrono::seconds(120));

/// A path under which other programs can start @p program, be it built for this machine or for an emulated one. The
/// script that the latter needs lies in @p folder.
QString startable(const QString &program, const QString &folder);

/// Whether @p condition came true within @p limit.
bool waitUntil(const std::function<bool()> &condition, std::chrono::seconds limit = std::chrono::seconds(30));

/// Does something as a user without privileges, where this process is root's. False, and nothing is done, where that
/// user cannot run @p program.
bool asOrdinaryUser(const QString &program, const std::function<void()> &action);
