#pragma once

#include <QtGlobal>

#if defined(__x86_64__) && defined(__GNUC__)
#include <cpuid.h>
#include <x86intrin.h>
#endif

namespace Kestrel::UI {

/** The processor's cycle counter, or 0 where there is none. */
inline quint64 cycleCount() noexcept {
#if defined(__x86_64__) && defined(__GNUC__)
    return __rdtsc();
#elif defined(__aarch64__) && defined(__GNUC__)
    quint64 count;
    asm volatile("mrs %0, cntvct_el0" : "=r"(count));
    return count;
#else
    return 0;
#endif
}

/** Whether cycleCount() runs at one rate on all cores, whatever their clocks do. */
inline bool cycleCounterIsInvariant() noexcept {
#if defined(__x86_64__) && defined(__GNUC__)
    // Advanced power management leaf, EDX bit 8: invariant TSC (AMD64 manual volume 3, appendix E;
    // Intel SDM volume 3, 18.17.1).
    unsigned int a = 0, b = 0, c = 0, d = 0;
    return __get_cpuid(0x80000007u, &a, &b, &c, &d) && (d & (1u << 8));
#elif defined(__aarch64__) && defined(__GNUC__)
    return true;
#else
    return false;
#endif
}

} // namespace Kestrel::UI
