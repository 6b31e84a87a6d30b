#include "support/program.h"

#include <QtCore/QFile>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QThread>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// The command that runs programs of another architecture; empty on a machine of their own.
QStringList emulator() {
    return QString::fromLocal8Bit(qgetenv("TEST_EMULATOR")).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

std::vector<QByteArray> variables(const Environment &environment) {
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable) {
        if (variable->isNull())
            all.remove(QString::fromLocal8Bit(variable.key()));
        else
            all.insert(QString::fromLocal8Bit(variable.key()), QString::fromLocal8Bit(*variable));
    }
    std::vector<QByteArray> result;
    for (const QString &entry : all.toStringList())
        result.push_back(entry.toLocal8Bit());
    return result;
}

std::vector<char *> pointers(std::vector<QByteArray> &texts) {
    std::vector<char *> result;
    for (QByteArray &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Program::Program(const QString &program, const QStringList &arguments, const Environment &environment) {
    std::vector<QByteArray> words;
    for (const QString &word : emulator() + QStringList(program) + arguments)
        words.push_back(QFile::encodeName(word));
    std::vector<QByteArray> assignments = variables(environment);

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
    if (posix_spawnp(&process, words.front().constData(), &files, &attributes, pointers(words).data(),
                     pointers(assignments).data()) != 0)
        qFatal("cannot start %s", words.front().constData());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
}

Program::~Program() {
    if (isReaped)
        return;
    kill();
    ::waitpid(process, nullptr, 0);
}

void Program::kill() const {
    ::kill(-process, SIGKILL);
}

Outcome Program::wait(std::chrono::seconds limit) {
    int status = 0;
    if (!waitUntil([&] { return ::waitpid(process, &status, WNOHANG) == process; }, limit)) {
        kill();
        ::waitpid(process, &status, 0);
    }
    isReaped = true;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), contents(folder.filePath(QStringLiteral("1"))),
            contents(folder.filePath(QStringLiteral("2")))};
}

Outcome run(const QString &program, const QStringList &arguments, const Environment &environment,
            std::chrono::seconds limit) {
    return Program(program, arguments, environment).wait(limit);
}

QString startable(const QString &program, const QString &folder) {
    if (emulator().isEmpty())
        return program;
    QFile script(folder + QLatin1Char('/') + program.section(QLatin1Char('/'), -1) + QStringLiteral(".sh"));
    if (script.open(QIODevice::WriteOnly))
        script.write("#!/bin/sh\nexec " + emulator().join(QLatin1Char(' ')).toLocal8Bit() + " '" +
                     QFile::encodeName(program) + "' \"$@\"\n");
    // by whatever user a test makes itself
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                          QFile::ReadOther | QFile::ExeOther);
    return script.fileName();
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

bool asOrdinaryUser(const QString &program, const std::function<void()> &action) {
    constexpr uid_t nobody = 65534;
    const uid_t before = ::geteuid();
    if (before == 0 && ::setresuid(nobody, nobody, 0) != 0)
        qFatal("cannot become another user");
    const bool canRun = ::access(QFile::encodeName(program).constData(), X_OK) == 0;
    if (canRun)
        action();
    if (before == 0 && ::setresuid(0, 0, 0) != 0)
        qFatal("cannot become root again");
    ::prctl(PR_SET_DUMPABLE, 1); // lost by the change of users, and needed by a leak checker
    return canRun;
}
