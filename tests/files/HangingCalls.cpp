#include "HangingCalls.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <cstdint>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

using Kestrel::Test::HangingCalls;

namespace {

struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::string folder;
    int waiting = 0;
    int hanging = 0; // the calls that do
    std::string failingFolder;
    int failing = 0; // the calls that do
    int error = 0;
    int skipped = 0;
    int count = 0;
};

// Stays: a call may come back while the process ends.
State& state() {
    static auto* const one = new State;
    return *one;
}

// Whether a call goes on to the system; else errno says why not.
bool passes(int call, const std::string& path) {
    State& all = state();
    std::unique_lock<std::mutex> lock(all.mutex);
    if ((all.failing & call) != 0 && path.rfind(all.failingFolder, 0) == 0 && --all.skipped < 0 &&
        --all.count >= 0) {
        errno = all.error;
        return false;
    }
    if ((all.hanging & call) == 0 || path.rfind(all.folder, 0) != 0)
        return true;
    ++all.waiting;
    all.changed.notify_all();
    all.changed.wait(lock, [&] { return all.hanging == 0; });
    --all.waiting;
    all.changed.notify_all();
    return true;
}

std::string pathOf(int directory, const char* name) {
    if (directory == AT_FDCWD || name[0] == '/')
        return name;
    std::string path(4096, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(directory);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    path.resize(length > 0 ? std::size_t(length) : 0);
    return path + '/' + name;
}

} // namespace

// The linker leads the library's calls through these (--wrap), on their way to the system.
extern "C" {
int __real_open(const char* path, int flags, ...);
int __real_stat(const char* path, struct stat* record);
int __real_lstat(const char* path, struct stat* record);
int __real_fstatat(int directory, const char* name, struct stat* record, int flags);
int __real_statx(int directory, const char* name, int flags, unsigned mask, struct statx* record);
int __real_mkdir(const char* path, mode_t mode);
ssize_t __real_getdents64(int directory, void* buffer, size_t size);
int __real_inotify_add_watch(int queue, const char* path, std::uint32_t events);
int __real_renameat2(int from, const char* old, int to, const char* fresh, unsigned flags);

int __wrap_open(const char* path, int flags, ...) {
    if (!passes(HangingCalls::Opens, path))
        return -1;
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return __real_open(path, flags, mode);
}

int __wrap_stat(const char* path, struct stat* record) {
    if (!passes(HangingCalls::Statuses, path))
        return -1;
    return __real_stat(path, record);
}

int __wrap_lstat(const char* path, struct stat* record) {
    if (!passes(HangingCalls::Statuses, path))
        return -1;
    return __real_lstat(path, record);
}

int __wrap_fstatat(int directory, const char* name, struct stat* record, int flags) {
    if (!passes(HangingCalls::Statuses, pathOf(directory, name)))
        return -1;
    return __real_fstatat(directory, name, record, flags);
}

int __wrap_statx(int directory, const char* name, int flags, unsigned mask, struct statx* record) {
    if (!passes(HangingCalls::Statuses, pathOf(directory, name)))
        return -1;
    return __real_statx(directory, name, flags, mask, record);
}

int __wrap_mkdir(const char* path, mode_t mode) {
    if (!passes(HangingCalls::Changes, path))
        return -1;
    return __real_mkdir(path, mode);
}

ssize_t __wrap_getdents64(int directory, void* buffer, size_t size) {
    if (!passes(HangingCalls::Readings, pathOf(directory, "")))
        return -1;
    return __real_getdents64(directory, buffer, size);
}

int __wrap_inotify_add_watch(int queue, const char* path, std::uint32_t events) {
    if (!passes(HangingCalls::Watches, path))
        return -1;
    return __real_inotify_add_watch(queue, path, events);
}

int __wrap_renameat2(int from, const char* old, int to, const char* fresh, unsigned flags) {
    if (!passes(HangingCalls::Renamings, old))
        return -1;
    return __real_renameat2(from, old, to, fresh, flags);
}
}

namespace Kestrel::Test {

HangingCalls::HangingCalls(const std::string& folder, int calls) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().folder = folder;
    state().hanging = calls;
}

HangingCalls::~HangingCalls() {
    release();
}

FailingCalls::FailingCalls(const std::string& folder, int calls, int error, int skipped,
                           int count) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().failingFolder = folder;
    state().failing = calls;
    state().error = error;
    state().skipped = skipped;
    state().count = count;
}

FailingCalls::~FailingCalls() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().failing = 0;
}

bool HangingCalls::isReached(int calls, int milliseconds) const {
    std::unique_lock<std::mutex> lock(state().mutex);
    return state().changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                    [=] { return state().waiting >= calls; });
}

void HangingCalls::release() {
    std::unique_lock<std::mutex> lock(state().mutex);
    state().hanging = 0;
    state().changed.notify_all();
    state().changed.wait(lock, [] { return state().waiting == 0; });
}

} // namespace Kestrel::Test
