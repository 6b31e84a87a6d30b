// SPDX-License-Identifier: MIT
/// This program, started again for one of its jobs.
#pragma once

#include "trial/descriptor.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <sys/types.h>

namespace quendar {

/// Called about once a second while something is waited for; whether it is still to be waited for.
using Tick = std::function<bool()>;

/// A helper that reads lines and answers with lines, in a session of its own. It holds the lock of its starter, so that
/// after the starter's end nobody takes over before the helper has ended too; and it ends when its input does.
class HelperProcess {
public:
    /// Throws Error when it cannot be started. @p lock is the descriptor that it gets, if any.
    explicit HelperProcess(const QStringList &arguments, int lock = -1);

    /// Waits for its end.
    ~HelperProcess();
    HelperProcess(const HelperProcess &) = delete;
    HelperProcess &operator=(const HelperProcess &) = delete;

    /// A line without its line feed, as an answer to @p line, which may be empty to send nothing; nothing when it has
    /// ended instead. The helper itself sees to it that it ends within @p limit; one that does not,
    /// or that is not to be waited for any more, is killed.
    std::optional<QByteArray> ask(const QByteArray &line, std::chrono::seconds limit, const Tick &tick);

    /// Ends all that is left of its process group.
    void killGroup() const;

private:
    Descriptor input;  // its standard input
    Descriptor output; // and output
    pid_t process = -1;
};

/// The helper's side of it. What the helper starts gets neither the lock nor the starter's lines, and cannot answer.
class HelperTask {
public:
    HelperTask();

    /// The next line without its line feed; nothing when the starter has ended, or needs no more.
    std::optional<QByteArray> nextLine();

    /// Whether the starter still takes @p line.
    bool answer(const QByteArray &line);

private:
    QFile input;
    QFile output;
};

/// Starts this program in a session of its own, without streams and descriptors of this one. Throws Error when that
/// fails.
void startDaemon(const QStringList &arguments);

} // namespace quendar
