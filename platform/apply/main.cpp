// SPDX-License-Identifier: MIT
/// The apply service: makes one section's settings take effect, reports the result and ends.
///
///     tessaro-apply SECTION TRIGGER
///
/// TRIGGER is the path of the key that takes the result, and the key of the semaphore that is released then.
#include "apply/childprocess.h"
#include "apply/hook.h"
#include "apply/hookprocess.h"
#include "tessaro/status.h"
#include "tessaro/utf8.h"
#include <tessaroclient.h>

#include <QtCore/QSystemSemaphore>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <thread>
#include <unistd.h>

namespace tessaro {

namespace {

using namespace std::chrono_literals;

// a hook that hangs must not keep the import waiting for ever
constexpr std::chrono::seconds hookLimit = 60s;

// the release is undone when this process ends, so it stays until the tool has certainly noticed
constexpr std::chrono::seconds longestStay = 60s;
constexpr std::chrono::seconds shortestStay = 5s;

constexpr std::chrono::milliseconds pollInterval = 10ms;

std::chrono::seconds secondsFrom(const char *variable, std::chrono::seconds otherwise) {
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber && seconds > 0 ? std::chrono::seconds(seconds) : otherwise;
}

QString apply(const QString &section, const QString &trigger) {
    const QByteArray hook = hookFor(section);
    return hook.isEmpty() ? QStringLiteral("0")
                          : runHook(hook, section, trigger, secondsFrom("TESSARO_APPLY_TIMEOUT", hookLimit));
}

void report(TessaroClient &client, const QString &trigger, const QString &result) {
    int status = client.set(trigger, result, RegParamValue);
    if (status == Success)
        status = client.commit(trigger);
    if (status != Success) {
        std::fprintf(stderr, "tessaro-apply: cannot write the result to \"%s\": status %d\n", qUtf8Printable(trigger),
                     status);
    }
}

void release(const QString &trigger) {
    QSystemSemaphore semaphore(trigger, 0, QSystemSemaphore::Open);
    if (!semaphore.release()) {
        std::fprintf(stderr, "tessaro-apply: cannot release the semaphore \"%s\": %s\n", qUtf8Printable(trigger),
                     qUtf8Printable(semaphore.errorString()));
    }
}

/// Lets go of all that somebody could wait for: the caller's pipes, and the folder it was started in.
void leave() {
    if (chdir("/") != 0)
        std::fprintf(stderr, "tessaro-apply: cannot leave its folder: %s\n", std::strerror(errno));
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        discard(descriptor);
}

bool isGoneWithin(TessaroClient &client, const QString &trigger, std::chrono::seconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (client.contains(trigger) != NotFound) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

void cleanUpAfterTool(TessaroClient &client, const QString &trigger) {
    client.del(trigger);
    client.commit(trigger);
    const QSystemSemaphore owned(trigger, 0, QSystemSemaphore::Create); // its owner removes it
}

void serve(const QString &section, const QString &trigger) {
    const auto stay = std::max(secondsFrom("TESSARO_APPLY_LINGER", longestStay), shortestStay);
    TessaroClient client;
    report(client, trigger, apply(section, trigger));
    release(trigger);
    leave();
    if (!isGoneWithin(client, trigger, stay))
        cleanUpAfterTool(client, trigger);
}

QString decode(const char *argument) {
    return decodeUtf8(argument, static_cast<int>(std::strlen(argument)));
}

} // namespace

} // namespace tessaro

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: tessaro-apply SECTION TRIGGER\n", stderr);
        return 1;
    }
    tessaro::serve(tessaro::decode(argv[1]), tessaro::decode(argv[2]));
    return 0;
}
