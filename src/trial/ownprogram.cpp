// SPDX-License-Identifier: MIT
#include "trial/ownprogram.h"

#include "report/error.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quendar {

namespace {

/// Where a helper finds the lock.
constexpr int lockDescriptor = 3;

constexpr std::chrono::milliseconds tickInterval = std::chrono::seconds(1);
constexpr std::chrono::seconds grace(2);

Error cannotStart(int error) {
    return Error(QStringLiteral("impossible to start a process: ") + QString::fromLocal8Bit(std::strerror(error)));
}

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw cannotStart(errno);
        reading = Descriptor(ends[0]);
        writing = Descriptor(ends[1]);
    }

    Descriptor reading;
    Descriptor writing;
};

/// What is different in a process that is started: a session of its own keeps the terminal's keys from it.
class Spawn {
public:
    Spawn() {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    }
    ~Spawn() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    Spawn(const Spawn &) = delete;
    Spawn &operator=(const Spawn &) = delete;

    void give(int descriptor, int as) { ::posix_spawn_file_actions_adddup2(&actions, descriptor, as); }
    void giveNothing(int as) { ::posix_spawn_file_actions_addopen(&actions, as, "/dev/null", O_RDWR, 0); }
    void giveNothingFrom(int first) { ::posix_spawn_file_actions_addclosefrom_np(&actions, first); }

    pid_t start(const QStringList &arguments) const {
        const QString named = qEnvironmentVariable("QUENDAR_CHANGE_PROGRAM");
        const QByteArray program = QFile::encodeName(named.isEmpty() ? QCoreApplication::applicationFilePath() : named);
        std::vector<QByteArray> words{program};
        for (const QString &argument : arguments)
            words.push_back(QFile::encodeName(argument));
        std::vector<char *> pointers(words.size() + 1, nullptr);
        std::transform(words.begin(), words.end(), pointers.begin(), [](QByteArray &word) { return word.data(); });
        pid_t process = -1;
        const int error = ::posix_spawn(&process, program.constData(), &actions, &attributes, pointers.data(), environ);
        require(error == 0, cannotStart(error));
        return process;
    }

private:
    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

/// Whether something can be read, or is at its end, within @p limit.
bool isReadable(const Descriptor &descriptor, std::chrono::milliseconds limit) {
    pollfd waited{descriptor.number(), POLLIN, 0};
    return ::poll(&waited, 1, int(limit.count())) > 0;
}

void waitForEnd(pid_t process) {
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

HelperProcess::HelperProcess(const QStringList &arguments, int lock) {
    Pipe questions;
    Pipe answers;
    Spawn spawn;
    spawn.give(questions.reading.number(), STDIN_FILENO);
    spawn.give(answers.writing.number(), STDOUT_FILENO);
    if (lock >= 0)
        spawn.give(lock, lockDescriptor);
    process = spawn.start(arguments);
    input = std::move(questions.writing);
    output = std::move(answers.reading);
}

HelperProcess::~HelperProcess() {
    input.close();
    waitForEnd(process);
}

std::optional<QByteArray> HelperProcess::ask(const QByteArray &line, std::chrono::seconds limit, const Tick &tick) {
    const auto end = std::chrono::steady_clock::now() + limit + grace;
    if (!line.isEmpty() && ::write(input.number(), (line + '\n').constData(), std::size_t(line.size()) + 1) < 0)
        return std::nullopt;
    QByteArray answer;
    while (!answer.endsWith('\n')) {
        if (!isReadable(output, tickInterval)) {
            const bool isOverdue = std::chrono::steady_clock::now() > end; // one that is stopped misses its alarm
            if (!tick() || isOverdue)
                ::kill(process, SIGKILL);
            continue;
        }
        std::array<char, 4096> buffer{};
        const ssize_t size = ::read(output.number(), buffer.data(), buffer.size());
        if (size == 0 || (size < 0 && errno != EINTR))
            return std::nullopt;
        answer.append(buffer.data(), int(qMax<ssize_t>(size, 0)));
    }
    return answer.chopped(1);
}

void HelperProcess::killGroup() const {
    ::kill(-process, SIGKILL);
}

HelperTask::HelperTask() {
    std::signal(SIGPIPE, SIG_DFL); // as all that it starts expects
    ::fcntl(lockDescriptor, F_SETFD, FD_CLOEXEC);
    input.open(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    output.open(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0), QIODevice::WriteOnly | QIODevice::Unbuffered,
                QFileDevice::AutoCloseHandle);
    const Descriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    ::dup2(nothing.number(), STDIN_FILENO);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

std::optional<QByteArray> HelperTask::nextLine() {
    const QByteArray line = input.readLine();
    return line.endsWith('\n') ? std::optional(line.chopped(1)) : std::nullopt;
}

bool HelperTask::answer(const QByteArray &line) {
    return output.write(line + '\n') == line.size() + 1;
}

void startDaemon(const QStringList &arguments) {
    Spawn spawn;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        spawn.giveNothing(stream);
    spawn.giveNothingFrom(STDERR_FILENO + 1);
    spawn.start(arguments);
}

} // namespace quendar
