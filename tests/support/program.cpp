// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QtCore/QFile>
#include <QtCore/QThread>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const QByteArray noLeakCheck = ":detect_leaks=0";

} // namespace

Environment withoutLeakCheck(Environment environment) {
    environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + noLeakCheck);
    return environment;
}

Program::Program(const QString &program, const QStringList &arguments, const Environment &environment)
    : isLeakChecked(!environment.value("ASAN_OPTIONS").endsWith(noLeakCheck)) {
    std::vector<QByteArray> words = {"env"};
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
        words.push_back(variable.key() + '=' + *variable);
    for (const QString &word : QStringList(program) + arguments)
        words.push_back(QFile::encodeName(word));
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    for (const int stream : {1, 2})
        posix_spawn_file_actions_addopen(&files, stream,
                                         QFile::encodeName(folder.filePath(QString::number(stream))).constData(),
                                         O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    if (posix_spawnp(&process, pointers.front(), &files, &attributes, pointers.data(), ::environ) != 0)
        qFatal("cannot start a program");
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
}

Program::~Program() {
    if (isReaped)
        return;
    end();
    ::waitpid(process, nullptr, 0);
}

void Program::kill() const {
    if (isLeakChecked)
        qFatal("a program that is to be killed must be started without a leak check");
    end();
}

void Program::end() const {
    ::kill(-process, SIGKILL);
}

Outcome Program::wait() {
    int status = 0;
    const auto hasEnded = [&] { return ::waitpid(process, &status, WNOHANG) == process; };
    if (!waitUntil(hasEnded, std::chrono::seconds(120))) {
        end();
        ::waitpid(process, &status, 0);
    }
    isReaped = true;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
            contentsOf(folder.filePath(QStringLiteral("1"))), contentsOf(folder.filePath(QStringLiteral("2")))};
}

Outcome run(const QString &program, const QStringList &arguments, const Environment &environment) {
    return Program(program, arguments, environment).wait();
}

bool waitUntil(const std::function<bool()> &condition, std::chrono::seconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QThread::msleep(2);
    }
    return true;
}

QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
