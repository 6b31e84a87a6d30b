// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QtCore/QFile>
#include <QtCore/QThread>

#include <csignal>
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

Program::Program(const QByteArray &commands, const Environment &environment)
    : isLeakChecked(!environment.value("ASAN_OPTIONS").endsWith(noLeakCheck)) {
    std::vector<QByteArray> words = {"env"};
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
        words.push_back(variable.key() + '=' + *variable);
    words.insert(words.end(), {"sh", "-c", "exec </dev/null >>\"$0/out\" 2>>\"$0/err\"\n" + commands,
                               QFile::encodeName(folder.path())});
    std::vector<char *> pointers;
    for (QByteArray &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    if (posix_spawnp(&process, pointers.front(), nullptr, &attributes, pointers.data(), ::environ) != 0)
        qFatal("cannot start a shell");
    posix_spawnattr_destroy(&attributes);
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
    if (!waitUntil(hasEnded, std::chrono::minutes(qgetenv("SWEEP") == "long" ? 120 : 2))) {
        end();
        ::waitpid(process, &status, 0);
    }
    isReaped = true;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
            contentsOf(folder.filePath(QStringLiteral("out"))), contentsOf(folder.filePath(QStringLiteral("err")))};
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
