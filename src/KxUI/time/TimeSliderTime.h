#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/TimeArithmetic.h>

#include <cmath>
#include <cstdint>
#include <limits>

namespace Kestrel::UI {

/** A Kestrel::Base::Time for arithmetic: an invalid operand makes the result invalid, sums saturate
    instead of overflowing, and no comparison with an invalid time is true. A plain value for any
    thread; its layout is frozen. */
class KXUI_EXPORT TimeSliderTime {
public:
    /** The largest time; sums stay within -Max to Max. */
    static constexpr Base::Time Max = Base::LargestTime;

    /** The invalid time. */
    constexpr TimeSliderTime() noexcept = default;

    /** That time; implicit, so that times and literals can be operands. */
    constexpr TimeSliderTime(Base::Time time) noexcept
        : m_time(time) {}

    /** The frame count, Kestrel::Base::InvalidTime when invalid. */
    constexpr Base::Time time() const noexcept { return m_time; }

    /** Whether the time is set. */
    constexpr bool isValid() const noexcept { return m_time != Base::InvalidTime; }

    /** The stored value in single precision; an invalid time has no special case. */
    constexpr float toFloat() const noexcept { return static_cast<float>(m_time); }

    /** A float rounded half away from zero and limited to -Max to Max; invalid for not-a-number. */
    static TimeSliderTime rounded(float value) noexcept { return truncated(std::round(value)); }

    /** A float cut towards zero and limited to -Max to Max; invalid for not-a-number. */
    static constexpr TimeSliderTime truncated(float value) noexcept {
        return Base::truncatedTime(value);
    }

    /** The exact sum limited to -Max to Max; invalid if either operand is. */
    friend constexpr TimeSliderTime operator+(TimeSliderTime a, TimeSliderTime b) noexcept {
        return Base::saturatedSum(a.m_time, b.m_time);
    }

    /** The exact difference limited to -Max to Max; invalid if either operand is. */
    friend constexpr TimeSliderTime operator-(TimeSliderTime a, TimeSliderTime b) noexcept {
        return Base::saturatedDifference(a.m_time, b.m_time);
    }

    /** The quotient in single precision, rounded half away from zero. */
    friend TimeSliderTime operator/(TimeSliderTime a, float b) noexcept {
        return a.isValid() ? rounded(a.toFloat() / b) : a;
    }

    /** The integer quotient, limited to the range of int; 1 when either operand is invalid.
        The divisor must not be 0. */
    friend constexpr int operator/(TimeSliderTime a, TimeSliderTime b) noexcept {
        if (!a.isValid() || !b.isValid())
            return 1;
        const Base::Time quotient = a.m_time / b.m_time;
        if (quotient > std::numeric_limits<int>::max())
            return std::numeric_limits<int>::max();
        if (quotient < std::numeric_limits<int>::min())
            return std::numeric_limits<int>::min();
        return static_cast<int>(quotient);
    }

    /** The quotient cut towards zero. The divisor must not be 0. */
    friend constexpr TimeSliderTime operator/(TimeSliderTime a, int b) noexcept {
        return a.isValid() ? TimeSliderTime(a.m_time / b) : a;
    }

    /** The product, which wraps around at 64 bits. */
    friend constexpr TimeSliderTime operator*(TimeSliderTime a, int b) noexcept {
        if (!a.isValid())
            return a;
        return static_cast<Base::Time>(static_cast<std::uint64_t>(a.m_time) *
                                       static_cast<std::uint64_t>(b));
    }

    /** The product in single precision, rounded half away from zero. */
    friend TimeSliderTime operator*(TimeSliderTime a, float b) noexcept {
        return a.isValid() ? rounded(a.toFloat() * b) : a;
    }

    /** The remainder, with the sign of the first operand. The divisor must not be 0. */
    friend constexpr TimeSliderTime operator%(TimeSliderTime a, TimeSliderTime b) noexcept {
        if (!a.isValid() || !b.isValid())
            return {};
        return a.m_time % b.m_time;
    }

    /** As the operator without the equals sign. */
    constexpr TimeSliderTime& operator+=(TimeSliderTime other) noexcept {
        return *this = *this + other;
    }
    constexpr TimeSliderTime& operator-=(TimeSliderTime other) noexcept {
        return *this = *this - other;
    }
    /** As the operator without the equals sign. */
    constexpr TimeSliderTime& operator*=(int factor) noexcept { return *this = *this * factor; }
    TimeSliderTime& operator*=(float factor) noexcept { return *this = *this * factor; }

    /** Compares valid times; false if either operand is invalid. */
    friend constexpr bool operator<(TimeSliderTime a, TimeSliderTime b) noexcept {
        return a.isValid() && b.isValid() && a.m_time < b.m_time;
    }
    friend constexpr bool operator>(TimeSliderTime a, TimeSliderTime b) noexcept { return b < a; }
    /** Compares valid times; false if either operand is invalid, equal ones included. */
    friend constexpr bool operator<=(TimeSliderTime a, TimeSliderTime b) noexcept {
        return a.isValid() && b.isValid() && a.m_time <= b.m_time;
    }
    friend constexpr bool operator>=(TimeSliderTime a, TimeSliderTime b) noexcept { return b <= a; }

    /** Compares the stored values: two invalid times are equal. */
    friend constexpr bool operator==(TimeSliderTime a, TimeSliderTime b) noexcept {
        return a.m_time == b.m_time;
    }
    friend constexpr bool operator!=(TimeSliderTime a, TimeSliderTime b) noexcept {
        return a.m_time != b.m_time;
    }

private:
    Base::Time m_time = Base::InvalidTime;
};

} // namespace Kestrel::UI
