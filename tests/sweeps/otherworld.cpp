// SPDX-License-Identifier: MIT
/// A library that is loaded ahead of all others, into every process of a device: it shows them another boot id and
/// other clocks, and ends them, fails their calls or runs something when they write. Calls go on as system calls: what
/// is loaded may not be ready yet when the first comes.
#include "sweeps/otherworld.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <spawn.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int openFile(const std::string &path, int flags) {
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path.c_str(), flags | O_CLOEXEC, 0600));
}

/// The first argument of this process.
std::string firstArgument() {
    char line[4096] = {};
    const int file = openFile("/proc/self/cmdline", O_RDONLY);
    ::syscall(SYS_read, file, line, sizeof line - 1);
    ::syscall(SYS_close, file);
    return line + std::strlen(line) + 1;
}

OtherWorld *mapped(const std::string &path) {
    const int file = openFile(path, O_RDWR);
    void *const memory = ::mmap(nullptr, sizeof(OtherWorld), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::syscall(SYS_close, file);
    if (memory == MAP_FAILED)
        std::abort();
    return static_cast<OtherWorld *>(memory);
}

const std::string folder = std::string(std::getenv("OTHERWORLD")) + '/';
const std::string device = folder.substr(0, folder.rfind('/', folder.size() - 2) + 1); // likewise with a slash
const std::string role = firstArgument();
OtherWorld *const world = mapped(folder + "control"); // null until all above is there

std::string linkTarget(const std::string &link) {
    char target[PATH_MAX];
    const ssize_t size = ::readlink(link.c_str(), target, sizeof target);
    return {target, static_cast<std::size_t>(size < 0 ? 0 : size)};
}

std::string placeOf(int file) {
    return linkTarget("/proc/self/fd/" + std::to_string(file));
}

std::string placeOf(const char *path) {
    return path[0] == '/' ? path : linkTarget("/proc/self/cwd") + '/' + path;
}

void runCommand() {
    const char *const arguments[] = {"sh", "-c", world->command, nullptr};
    pid_t shell = -1;
    if (::posix_spawn(&shell, "/bin/sh", nullptr, nullptr, const_cast<char *const *>(arguments), ::environ) != 0)
        std::abort();
    while (::waitpid(shell, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/// The error that a call is to end with, or 0 where it may go on.
int trouble(const char *call, const std::string &path) {
    const std::string line = role + ' ' + call + ' ' + path;
    if (::fnmatch(world->counted, line.c_str(), FNM_EXTMATCH) != 0)
        return 0;
    const int number = ++world->calls;
    const int log = openFile(folder + "calls", O_WRONLY | O_CREAT | O_APPEND);
    ::syscall(SYS_write, log, (line + '\n').c_str(), line.size() + 1);
    ::syscall(SYS_close, log);
    if (number < world->first || number > world->last)
        return 0;
    switch (world->deed) {
    case OtherWorld::None:
        break;
    case OtherWorld::Kill:
        ::kill(::getpid(), SIGKILL);
        break;
    case OtherWorld::Fail:
        return world->error;
    case OtherWorld::Run:
        runCommand();
    }
    return 0;
}

/// The system call, unless it is to fail.
template <typename... Arguments>
int written(const char *call, const std::string &path, long number, Arguments... arguments) {
    const bool isOfDevice = world && path.compare(0, device.size(), device) == 0;
    if (const int error = isOfDevice ? trouble(call, path.substr(device.size())) : 0; error != 0) {
        errno = error;
        return -1;
    }
    return static_cast<int>(::syscall(number, arguments...));
}

} // namespace

// NOLINTBEGIN: the names and signatures are the C library's
extern "C" {

int open(const char *path, int flags, ...) {
    __builtin_va_list more;
    __builtin_va_start(more, flags);
    const auto mode = __builtin_va_arg(more, mode_t); // what is not read where nothing is made
    __builtin_va_end(more);
    if (world && std::strcmp(path, "/proc/sys/kernel/random/boot_id") == 0)
        return openFile(folder + "boot_id", flags);
    const bool makes = (flags & O_CREAT) != 0 && ::access(path, F_OK) != 0;
    return makes ? written("create", placeOf(path), SYS_openat, AT_FDCWD, path, flags, mode)
                 : static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
int open64(const char *path, int flags, ...) __attribute__((alias("open")));

ssize_t write(int file, const void *bytes, size_t size) {
    return written("write", placeOf(file), SYS_write, file, bytes, size);
}
ssize_t pwrite64(int file, const void *bytes, size_t size, off64_t offset) {
    return written("write", placeOf(file), SYS_pwrite64, file, bytes, size, offset);
}
int ftruncate64(int file, off64_t size) noexcept {
    return written("truncate", placeOf(file), SYS_ftruncate, file, size);
}
int fsync(int file) {
    return written("sync", placeOf(file), SYS_fsync, file);
}
int fdatasync(int file) {
    return written("sync", placeOf(file), SYS_fdatasync, file);
}

int rename(const char *path, const char *other) noexcept {
    return written("rename", placeOf(other), SYS_renameat2, AT_FDCWD, path, AT_FDCWD, other, 0);
}
int unlink(const char *path) noexcept {
    return written("remove", placeOf(path), SYS_unlinkat, AT_FDCWD, path, 0);
}
int rmdir(const char *path) noexcept {
    return written("remove", placeOf(path), SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR);
}
int mkdir(const char *path, mode_t mode) noexcept {
    return written("mkdir", placeOf(path), SYS_mkdirat, AT_FDCWD, path, mode);
}

int clock_gettime(clockid_t clock, timespec *now) noexcept {
    const auto result = static_cast<int>(::syscall(SYS_clock_gettime, clock, now));
    if (world && clock == CLOCK_BOOTTIME)
        now->tv_sec += world->bootClockAhead;
    if (world && clock == CLOCK_REALTIME)
        now->tv_sec += world->wallClockAhead;
    return result;
}
int gettimeofday(timeval *now, void * /*zone*/) noexcept {
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    *now = {time.tv_sec, time.tv_nsec / 1000};
    return 0;
}
time_t time(time_t *now) noexcept {
    timespec time = {};
    clock_gettime(CLOCK_REALTIME, &time);
    return now ? *now = time.tv_sec : time.tv_sec;
}

/// TessaroClient::commit, of which nothing is known here that `sh` would have to be linked with.
int _ZN13TessaroClient6commitERK7QString(void *client, const void *path) {
    static const auto next = reinterpret_cast<int (*)(void *, const void *)>(::dlsym(RTLD_NEXT, __func__));
    return trouble("commit", "") != 0 ? 5 : next(client, path);
}

} // extern "C"
// NOLINTEND
