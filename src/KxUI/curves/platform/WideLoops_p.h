#pragma once

/** \file
    Lets the compiler vectorise a loop a second time for processors with AVX2: the loop is written
    once as KXUI_LOOP_BODY and called from a plain function and from one marked KXUI_WIDE_LOOP. */

#if defined(__GNUC__) && defined(__x86_64__)
#define KXUI_LOOP_BODY inline __attribute__((always_inline))
#define KXUI_WIDE_LOOP __attribute__((target("avx2")))
#else
#define KXUI_LOOP_BODY inline
#define KXUI_WIDE_LOOP
#endif

namespace Kestrel::UI {

/** Whether functions marked KXUI_WIDE_LOOP run here, and gain anything. */
inline bool hasWideLoops() noexcept {
#if defined(__GNUC__) && defined(__x86_64__)
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

} // namespace Kestrel::UI
