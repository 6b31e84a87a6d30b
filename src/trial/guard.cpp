// SPDX-License-Identifier: MIT
#include "trial/guard.h"

#include "report/error.h"
#include "trial/durablefile.h"
#include "trial/filelock.h"
#include "trial/ownprogram.h"
#include "trial/trial.h"

#include <QtCore/QFile>

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>

namespace quendar {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A guard that was started watches within milliseconds.
constexpr seconds startLimit(10);
constexpr milliseconds startPause(5);

/// While somebody else has the lock, the record is looked at this often.
constexpr milliseconds lockPause(100);

/// The time is looked at this often: a sleep does not count the time in which the device is suspended.
constexpr milliseconds usualPause = seconds(1);

/// Between tries to put a change back where the registry or the disk does not let it.
constexpr milliseconds firstRetryPause = seconds(5);
constexpr milliseconds longestRetryPause = seconds(60);

/// Notices that a record was replaced.
class FolderWatch {
public:
    explicit FolderWatch(const QString &folder) : events(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        ::inotify_add_watch(events.number(), QFile::encodeName(folder).constData(), IN_MOVED_TO);
    }

    void forget() const {
        std::array<char, 4096> buffer{};
        while (::read(events.number(), buffer.data(), buffer.size()) > 0) {
        }
    }

    void wait(milliseconds limit) const {
        pollfd waited{events.number(), POLLIN, 0};
        ::poll(&waited, 1, int(limit.count()));
    }

private:
    Descriptor events;
};

/// The file that a guard locks holds the id of the change that it watches, until it is about to end.
void announce(const FileLock &lock, const QString &id) {
    const QByteArray text = id.toUtf8();
    // over what is there, which a full disk allows
    if (::pwrite(lock.descriptor(), text.constData(), std::size_t(text.size()), 0) < 0 ||
        ::ftruncate(lock.descriptor(), text.size()) != 0)
        throwSystemError("write", QStringLiteral("the guard's lock"));
}

/// A guard's looks at its change.
class Watch {
public:
    Watch(const StateFolder &stateFolder, const FileLock &held, const QString &watched)
        : folder(stateFolder), own(held), id(watched), changes(stateFolder.path()) {
        announce(own, id);
    }

    /// Goes on with the change; false where nothing is left to do.
    bool goOn() {
        std::optional<FileLock> lock;
        while (!(lock = FileLock::tried(folder.lockPath(), {}))) {
            if (isOver()) // who has the lock makes the next change, and waits for this guard to end
                return false;
            std::this_thread::sleep_for(lockPause);
        }
        const bool isAnythingLeft = goOnAlone(*lock);
        if (!isAnythingLeft)
            announce(own, {});
        changes.forget(); // its own; those of others come when they have the lock
        return isAnythingLeft;
    }

    void wait() const { changes.wait(pause); }

private:
    /// Whoever opens the change again counts on this guard only while it is announced.
    bool isOver() const {
        if (isUnfinished())
            return false;
        announce(own, {});
        if (!isUnfinished())
            return true;
        announce(own, id);
        return false;
    }

    bool isUnfinished() const {
        const std::optional<ChangeRecord> record = folder.record();
        return record && record->id == id && (record->isOpen() || record->isPostActionDue());
    }

    bool goOnAlone(const FileLock &lock) {
        TrialObserver nobody;
        Trial trial(folder, lock, nobody);
        if (!trial.record() || trial.record()->id != id)
            return false;
        try {
            trial.resume();
            trial.check();
            trial.keepTime();
            pause = usualPause;
        } catch (const Error &) { // the record says it
            pause = std::clamp(pause * 2, firstRetryPause, longestRetryPause);
        }
        return trial.isOpen();
    }

    const StateFolder &folder;
    const FileLock &own;
    const QString id;
    const FolderWatch changes;
    milliseconds pause = usualPause;
};

} // namespace

bool isGuarded(const StateFolder &folder, const QString &id) {
    QFile file(folder.guardLockPath());
    return FileLock::isHeld(folder.guardLockPath()) && file.open(QIODevice::ReadOnly) &&
           QString::fromUtf8(file.readAll()) == id;
}

void requireGuard(const StateFolder &folder, const QString &id) {
    if (isGuarded(folder, id))
        return;
    startDaemon({QStringLiteral("guard")});
    for (milliseconds waited{}; !isGuarded(folder, id); waited += startPause) {
        require(waited < startLimit, Error(QStringLiteral("impossible to start a guard of the change")));
        std::this_thread::sleep_for(startPause);
    }
}

void guardChange(const StateFolder &folder) {
    const FileLock lock = FileLock::waitedFor(folder.guardLockPath());
    const std::optional<ChangeRecord> record = folder.record();
    if (!record || !record->isOpen())
        return;
    for (Watch watch(folder, lock, record->id); watch.goOn();)
        watch.wait();
}

} // namespace quendar
