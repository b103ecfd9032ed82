#pragma once

#include <KxUI/base/Time.h>

#include <limits>
#include <optional>

/** \file
    Arithmetic on times that never overflows. Pure functions, callable from any thread. */

namespace Kestrel::Base {

/** The largest time; the smallest valid one is its negative. */
inline constexpr Time LargestTime = std::numeric_limits<Time>::max();

/** Whether a + b, for valid times, is a valid time. */
constexpr bool sumFits(Time a, Time b) noexcept {
    return b >= 0 ? a <= LargestTime - b : a >= -LargestTime - b;
}

/** a + b for valid times, nothing where the sum is not a valid time. */
constexpr std::optional<Time> exactSum(Time a, Time b) noexcept {
    return sumFits(a, b) ? std::optional<Time>(a + b) : std::nullopt;
}

/** a * b for times of 0 or more, nothing where the product is not a time. */
constexpr std::optional<Time> exactProduct(Time a, Time b) noexcept {
    if (b != 0 && a > LargestTime / b)
        return std::nullopt;
    return a * b;
}

/** a + b limited to -LargestTime to LargestTime; InvalidTime if either is. */
constexpr Time saturatedSum(Time a, Time b) noexcept {
    if (a == InvalidTime || b == InvalidTime)
        return InvalidTime;
    return sumFits(a, b) ? a + b : b > 0 ? LargestTime : -LargestTime;
}

/** a - b, likewise. */
constexpr Time saturatedDifference(Time a, Time b) noexcept {
    return b == InvalidTime ? InvalidTime : saturatedSum(a, -b);
}

/** A number of frames cut towards zero and limited to -LargestTime to LargestTime; InvalidTime for
    not-a-number. */
template <class Real>
constexpr Time truncatedTime(Real frames) noexcept {
    constexpr Real limit{9223372036854775808.0F}; // 2 to the 63rd, just above LargestTime
    if (frames >= limit)
        return LargestTime;
    if (frames <= -limit)
        return -LargestTime;
    return frames == frames ? static_cast<Time>(frames) : InvalidTime;
}

} // namespace Kestrel::Base
