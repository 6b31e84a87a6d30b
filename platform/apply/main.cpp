// SPDX-License-Identifier: MIT
/// The apply service: makes one section's settings take effect, reports the result and ends.
///
///     tessaro-apply SECTION TRIGGER
///
/// TRIGGER is the path of the key that takes the result, and the key of the semaphore that is released then. Standard
/// input is a pipe from the tool, hung up when that has ended. Started by hand, the service has another standard input,
/// and stays until the key is gone.
#include "apply/childprocess.h"
#include "apply/hook.h"
#include "apply/hookprocess.h"
#include "tessaro/status.h"
#include "tessaro/utf8.h"
#include <tessaroclient.h>

#include <QtCore/QSystemSemaphore>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <unistd.h>

namespace tessaro {

namespace {

using namespace std::chrono_literals;

// a hook that hangs must not keep the import waiting for ever
constexpr std::chrono::seconds usualHookLimit = 60s;

constexpr std::chrono::milliseconds pollInterval = 10ms;

std::chrono::seconds hookLimit() {
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("TESSARO_APPLY_TIMEOUT", &isNumber);
    return isNumber && seconds > 0 ? std::chrono::seconds(seconds) : usualHookLimit;
}

QString apply(const QString &section, const QString &trigger) {
    const QByteArray hook = hookFor(section);
    return hook.isEmpty() ? QStringLiteral("0") : runHook(hook, section, trigger, hookLimit());
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
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO})
        discard(descriptor);
}

/// Waits for the end of the tool, but no longer than @p limit; whether it has come.
bool hasToolEndedWithin(std::chrono::milliseconds limit) {
    pollfd input{STDIN_FILENO, 0, 0}; // asked for nothing, it still reports that it was hung up
    return poll(&input, 1, static_cast<int>(limit.count())) > 0;
}

/// One try is enough: it waits for a lock as long as every call does, and a key that stays does no harm.
void cleanUpAfterTool(TessaroClient &client, const QString &trigger) {
    client.del(trigger);
    client.commit(trigger);
    const QSystemSemaphore owned(trigger, 0, QSystemSemaphore::Create); // its owner removes it
}

/// The release is undone when this process ends, so it stays until the tool has noticed, which then removes the key,
/// however long it is stopped meanwhile; or until it has ended without that.
void stayForTool(TessaroClient &client, const QString &trigger) {
    bool hasToolEnded = false;
    while (client.contains(trigger) != NotFound) { // also when the registry cannot be read at the moment
        if (hasToolEnded) {
            cleanUpAfterTool(client, trigger);
            return;
        }
        hasToolEnded = hasToolEndedWithin(pollInterval);
    }
}

void serve(const QString &section, const QString &trigger) {
    TessaroClient client;
    report(client, trigger, apply(section, trigger));
    release(trigger);
    leave();
    stayForTool(client, trigger);
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
