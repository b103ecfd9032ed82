#include "HangingCalls.h"

#include <chrono>
#include <condition_variable>
#include <cstdarg>
#include <fcntl.h>
#include <mutex>
#include <sys/types.h>

// The linker leads the library's calls through these (--wrap), on their way to the system.
extern "C" {
int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...);
}

namespace {

struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::string folder;
    int waiting = 0;
    bool hangs = false;
};

// Stays: a call may come back while the process ends.
State& state() {
    static auto* const one = new State;
    return *one;
}

void hangFor(const char* path) {
    State& all = state();
    std::unique_lock<std::mutex> lock(all.mutex);
    if (!all.hangs || std::string(path).rfind(all.folder, 0) != 0)
        return;
    ++all.waiting;
    all.changed.notify_all();
    all.changed.wait(lock, [&] { return !all.hangs; });
    --all.waiting;
    all.changed.notify_all();
}

} // namespace

int __wrap_open(const char* path, int flags, ...) {
    hangFor(path);
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return __real_open(path, flags, mode);
}

namespace Kestrel::Test {

HangingCalls::HangingCalls(const std::string& folder) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().folder = folder;
    state().hangs = true;
}

HangingCalls::~HangingCalls() {
    release();
}

bool HangingCalls::isReached(int calls) const {
    std::unique_lock<std::mutex> lock(state().mutex);
    return state().changed.wait_for(lock, std::chrono::seconds(20),
                                    [=] { return state().waiting >= calls; });
}

void HangingCalls::release() {
    std::unique_lock<std::mutex> lock(state().mutex);
    state().hangs = false;
    state().changed.notify_all();
    state().changed.wait(lock, [] { return state().waiting == 0; });
}

} // namespace Kestrel::Test
