#pragma once

// The locks of a stock Qt are invisible to ThreadSanitizer, which then reports races that are none.
// These tell it what happens; in every other build they are nothing.

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define KXUI_THREAD_SANITIZER
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define KXUI_THREAD_SANITIZER
#endif

#if defined(KXUI_THREAD_SANITIZER)
#include <sanitizer/tsan_interface.h>
#endif

namespace Kestrel::UI {

enum class LockUse { Exclusive, Shared };

#if defined(KXUI_THREAD_SANITIZER)
inline unsigned sanitizerFlags(LockUse use) noexcept {
    return use == LockUse::Shared ? __tsan_mutex_read_lock : 0u;
}
inline void beforeLock(void* lock, LockUse use) noexcept {
    __tsan_mutex_pre_lock(lock, sanitizerFlags(use));
}
inline void afterLock(void* lock, LockUse use) noexcept {
    __tsan_mutex_post_lock(lock, sanitizerFlags(use), 0);
}
inline void beforeUnlock(void* lock, LockUse use) noexcept {
    __tsan_mutex_pre_unlock(lock, sanitizerFlags(use));
}
inline void afterUnlock(void* lock, LockUse use) noexcept {
    __tsan_mutex_post_unlock(lock, sanitizerFlags(use));
}
#else
inline void beforeLock(void*, LockUse) noexcept {}
inline void afterLock(void*, LockUse) noexcept {}
inline void beforeUnlock(void*, LockUse) noexcept {}
inline void afterUnlock(void*, LockUse) noexcept {}
#endif

} // namespace Kestrel::UI
