#include "SlowCalls.h"

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <thread>
#include <unistd.h>

namespace {

struct Slow {
    std::mutex mutex;
    std::string folder;
    std::atomic<int> milliseconds{0};
    std::string forbidden; // folder; for one thread
    std::atomic<bool> isForbidding{false};
    std::thread::id thread;

    Slow() {
        const char* const where = std::getenv("KXUI_SLOW_FOLDER");
        const char* const time = std::getenv("KXUI_SLOW_MILLISECONDS");
        if (where && time) {
            folder = where;
            milliseconds = std::atoi(time);
        }
    }
};

// Stays: calls go on while the process ends.
Slow& slow() {
    static auto* const one = new Slow;
    return *one;
}

bool isBelow(const char* path, const std::string& folder) {
    return !folder.empty() && std::strncmp(path, folder.c_str(), folder.size()) == 0;
}

// The name of the caller is that of the system's call.
void wait(const char* path, const char* call = __builtin_FUNCTION()) {
    Slow& all = slow();
    const int milliseconds = all.milliseconds;
    if ((milliseconds == 0 && !all.isForbidding) || !path)
        return;
    {
        const std::lock_guard<std::mutex> lock(all.mutex);
        if (all.isForbidding && std::this_thread::get_id() == all.thread &&
            isBelow(path, all.forbidden)) {
            std::fprintf(stderr, "%s(%s) by a thread that must not wait\n", call, path);
            std::abort();
        }
        if (!isBelow(path, all.folder))
            return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void waitAt(int directory, const char* name, const char* call = __builtin_FUNCTION()) {
    if (slow().milliseconds == 0 && !slow().isForbidding)
        return;
    if (directory == AT_FDCWD || (name && name[0] == '/')) {
        wait(name, call);
        return;
    }
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(directory);
    const ssize_t length = ::readlink(link.c_str(), path, sizeof path - 1);
    path[length > 0 ? length : 0] = '\0';
    wait(path, call);
}

template <class Call>
Call next(const char* name) {
    return reinterpret_cast<Call>(::dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, std::va_list more) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
}

} // namespace

// In front of the system's. An argument list, and what is done with it, stands once for each.
#define KXUI_SLOW_CALL(result, name, waiting, parameters, arguments)                               \
    extern "C" __attribute__((visibility("default"))) result name parameters {                     \
        static const auto call = next<result(*) parameters>(#name);                                \
        waiting;                                                                                   \
        return call arguments;                                                                     \
    }

#define KXUI_SLOW_OPEN(name)                                                                       \
    extern "C" __attribute__((visibility("default"))) int name(const char* path, int flags, ...) { \
        static const auto call = next<int (*)(const char*, int, ...)>(#name);                      \
        std::va_list more;                                                                         \
        va_start(more, flags);                                                                     \
        const mode_t mode = modeOf(flags, more);                                                   \
        va_end(more);                                                                              \
        wait(path);                                                                                \
        return call(path, flags, mode);                                                            \
    }

KXUI_SLOW_OPEN(open)
KXUI_SLOW_OPEN(open64)
KXUI_SLOW_CALL(DIR*, opendir, wait(path), (const char* path), (path))
KXUI_SLOW_CALL(ssize_t, getdents64, waitAt(directory, nullptr),
               (int directory, void* buffer, size_t size), (directory, buffer, size))
KXUI_SLOW_CALL(int, stat, wait(path), (const char* path, struct stat* record), (path, record))
KXUI_SLOW_CALL(int, lstat, wait(path), (const char* path, struct stat* record), (path, record))
KXUI_SLOW_CALL(int, stat64, wait(path), (const char* path, struct stat64* record), (path, record))
KXUI_SLOW_CALL(int, lstat64, wait(path), (const char* path, struct stat64* record), (path, record))
KXUI_SLOW_CALL(int, fstatat, waitAt(directory, name),
               (int directory, const char* name, struct stat* record, int flags),
               (directory, name, record, flags))
KXUI_SLOW_CALL(int, fstatat64, waitAt(directory, name),
               (int directory, const char* name, struct stat64* record, int flags),
               (directory, name, record, flags))
KXUI_SLOW_CALL(int, statx, waitAt(directory, name),
               (int directory, const char* name, int flags, unsigned mask, struct statx* record),
               (directory, name, flags, mask, record))
KXUI_SLOW_CALL(int, access, wait(path), (const char* path, int mode), (path, mode))
KXUI_SLOW_CALL(int, faccessat, waitAt(directory, name),
               (int directory, const char* name, int mode, int flags),
               (directory, name, mode, flags))
KXUI_SLOW_CALL(int, statfs, wait(path), (const char* path, struct statfs* record), (path, record))

KXUI_SLOW_CALL(int, mkdir, wait(path), (const char* path, mode_t mode), (path, mode))
KXUI_SLOW_CALL(int, rmdir, wait(path), (const char* path), (path))
KXUI_SLOW_CALL(int, unlink, wait(path), (const char* path), (path))
KXUI_SLOW_CALL(int, chmod, wait(path), (const char* path, mode_t mode), (path, mode))
KXUI_SLOW_CALL(int, rename, wait(path), (const char* path, const char* fresh), (path, fresh))
KXUI_SLOW_CALL(int, renameat2, waitAt(directory, path),
               (int directory, const char* path, int to, const char* fresh, unsigned flags),
               (directory, path, to, fresh, flags))
KXUI_SLOW_CALL(char*, realpath, wait(path), (const char* path, char* resolved), (path, resolved))
KXUI_SLOW_CALL(int, inotify_add_watch, wait(path), (int queue, const char* path, uint32_t events),
               (queue, path, events))

namespace Kestrel::Test {

void slowDownCalls(const std::string& folder, int milliseconds) {
    Slow& all = slow();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.folder = folder;
    all.milliseconds = milliseconds;
}

ForbiddenCalls::ForbiddenCalls(const std::string& folder) {
    Slow& all = slow();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.forbidden = folder;
    all.thread = std::this_thread::get_id();
    all.isForbidding = true;
}

ForbiddenCalls::~ForbiddenCalls() {
    slow().isForbidding = false;
}

} // namespace Kestrel::Test
