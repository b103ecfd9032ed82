#pragma once

#include <KxUI/Export.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace Kestrel::Base {

/** A frame rate as a fraction, in frames per second.

    A base with denominator 0 is invalid and its rate is 0. The base 0/1 is valid, with rate 0. The
    fraction never changes after construction, so the rate and the number of frame labels a second
    are worked out once. A plain value, safe to copy and to read from any thread; its layout is
    frozen. */
class KXUI_EXPORT TimeBase {
public:
    /** The rates that film and television agreed on; the values are part of saved settings. */
    enum Standard : std::int32_t {
        Rate24 = 0,    ///< 24/1
        Rate25 = 1,    ///< 25/1
        Rate30 = 2,    ///< 30/1
        Rate50 = 3,    ///< 50/1
        Rate60 = 4,    ///< 60/1
        Rate23976 = 5, ///< 24000/1001
        Rate2997 = 6,  ///< 30000/1001
        Rate5994 = 7   ///< 60000/1001
    };

    /** The invalid base, 0/0. */
    constexpr TimeBase() noexcept = default;

    /** A whole rate: fps/1, or (fps * 1000)/1001 when `ntsc` is set. 0 gives the invalid base.
        An exact fraction is made by fromFraction(). */
    constexpr TimeBase(unsigned fps, bool ntsc) noexcept {
        if (fps != 0)
            *this = ntsc ? fromFraction(std::uint64_t{fps} * 1000, 1001) : fromFraction(fps, 1);
    }

    /** Not `TimeBase(30000, 1001)`: a denominator is no NTSC flag. */
    template <class Flag, std::enable_if_t<!std::is_same_v<Flag, bool>, int> = 0>
    TimeBase(unsigned fps, Flag ntsc) = delete;

    /** The base that a measured rate in frames per second stands for, compared in single precision:
        a whole number within 0.0001, else 24000/1001, 30000/1001 or 60000/1001 within 0.011, else a
        numerator over 100. A rate near 0 gives 0/1, a negative one a numerator of 0; infinity and
        not-a-number give the invalid base. */
    explicit constexpr TimeBase(double rate) noexcept {
        constexpr double limit = std::numeric_limits<float>::max();
        if (!(rate >= -limit && rate <= limit))
            return;
        const float single = static_cast<float>(rate);
        if (distance(single, 0.0F) < SameRate) {
            *this = fromFraction(0, 1);
        } else if (const double whole = rounded(single);
                   distance(static_cast<float>(whole), single) < SameRate) {
            *this = fromFraction(clamped(whole), 1);
        } else if (isNear(single, 24000)) {
            *this = fromFraction(24000, 1001);
        } else if (isNear(single, 30000)) {
            *this = fromFraction(30000, 1001);
        } else if (isNear(single, 60000)) {
            *this = fromFraction(60000, 1001);
        } else {
            *this = fromFraction(clamped(rounded(single * 100.0F)), 100);
        }
    }

    /** Exactly numerator/denominator, kept unreduced. Denominator 0 gives an invalid base. */
    static constexpr TimeBase fromFraction(std::uint64_t numerator,
                                           std::uint64_t denominator) noexcept {
        TimeBase base;
        base.m_numerator = numerator;
        base.m_denominator = denominator;
        if (denominator != 0) {
            base.m_rate = static_cast<float>(numerator) / static_cast<float>(denominator);
            constexpr double most = std::numeric_limits<std::int32_t>::max();
            const double labels = static_cast<double>(base.m_rate) + 0.5;
            base.m_roundedFps = static_cast<std::int32_t>(labels < most ? labels : most);
        }
        return base;
    }

    /** One of the standard rates; the invalid base for a value that is none of them. */
    static constexpr TimeBase standard(Standard rate) noexcept {
        switch (rate) {
        case Rate24:
            return TimeBase(24, false);
        case Rate25:
            return TimeBase(25, false);
        case Rate30:
            return TimeBase(30, false);
        case Rate50:
            return TimeBase(50, false);
        case Rate60:
            return TimeBase(60, false);
        case Rate23976:
            return TimeBase(24, true);
        case Rate2997:
            return TimeBase(30, true);
        case Rate5994:
            return TimeBase(60, true);
        }
        return TimeBase();
    }

    /** Becomes the standard rate of that index and returns true; an index above 7 changes nothing
        and returns false. */
    constexpr bool setStandard(std::uint32_t index) noexcept {
        if (index > Rate5994)
            return false;
        *this = standard(static_cast<Standard>(index));
        return true;
    }

    /** The fraction as it was given, unreduced; in frames per second. */
    constexpr std::uint64_t numerator() const noexcept { return m_numerator; }
    constexpr std::uint64_t denominator() const noexcept { return m_denominator; }

    /** False when the denominator is 0. */
    constexpr bool isValid() const noexcept { return m_denominator != 0; }

    /** Frames per second in single precision; 0 for an invalid base. */
    constexpr float rate() const noexcept { return m_rate; }

    /** The number of frame labels in a second of timecode: the rate rounded to the nearest integer
        and held to 32 bits; 0 for an invalid base. */
    constexpr std::int32_t roundedFps() const noexcept { return m_roundedFps; }

    /** Whether the rate lies within 0.011 of 24000/1001, 30000/1001 or 60000/1001. */
    constexpr bool isNtscRate() const noexcept {
        return isNear(m_rate, 24000) || isDropFrameRate();
    }

    /** Whether the rate lies within 0.011 of 30000/1001 or 60000/1001, the rates whose timecode may
        drop frame labels (SMPTE ST 12-1). */
    constexpr bool isDropFrameRate() const noexcept {
        return isNear(m_rate, 30000) || isNear(m_rate, 60000);
    }

    /** Both invalid, or both valid with rates that differ by less than 0.0001. The fractions need
        not be the same. */
    friend constexpr bool operator==(const TimeBase& a, const TimeBase& b) noexcept {
        return a.isValid() == b.isValid() && distance(a.m_rate, b.m_rate) < SameRate;
    }

    /** Not equal, as operator==() has it. */
    friend constexpr bool operator!=(const TimeBase& a, const TimeBase& b) noexcept {
        return !(a == b);
    }

private:
    static constexpr float SameRate = 0.0001F;

    static constexpr float distance(float a, float b) noexcept { return a < b ? b - a : a - b; }

    static constexpr bool isNear(float rate, int ntscNumerator) noexcept {
        return distance(rate, static_cast<float>(ntscNumerator) / 1001.0F) < 0.011F;
    }

    // Half away from zero. In double the sum is exact wherever a float has a fraction to round.
    static constexpr double rounded(float value) noexcept {
        const double magnitude = value < 0.0F ? -static_cast<double>(value) : value;
        if (magnitude >= 16777216.0)
            return value;
        const double whole = static_cast<double>(static_cast<std::int64_t>(magnitude + 0.5));
        return value < 0.0F ? -whole : whole;
    }

    static constexpr std::uint64_t clamped(double value) noexcept {
        constexpr double beyond = 18446744073709551616.0;
        if (!(value > 0.0))
            return 0;
        return value < beyond ? static_cast<std::uint64_t>(value)
                              : std::numeric_limits<std::uint64_t>::max();
    }

    std::uint64_t m_numerator = 0;
    std::uint64_t m_denominator = 0;
    float m_rate = 0.0F;
    std::int32_t m_roundedFps = 0;
};

} // namespace Kestrel::Base
