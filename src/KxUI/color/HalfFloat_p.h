#pragma once

#include <cstdint>
#include <cstring>

// Half floats (IEEE 754 binary16) by integer arithmetic: no subnormal float takes part in it, so that
// a host that flushes those to zero gets the same bits.

namespace Kestrel::UI {

// Values beside those of the formats themselves that both directions of both kinds of kernels use.
namespace HalfBits {
constexpr std::uint32_t Magnitude = 0x7FFF;
constexpr std::uint32_t Sign = 0x8000;
constexpr std::uint32_t Infinity = 0x7C00;
constexpr std::uint32_t Quiet = 0x0200;
constexpr std::uint32_t Payload = 0x03FF;
constexpr int FractionShift = 23 - 10;
constexpr std::uint32_t FloatMagnitude = 0x7FFFFFFF;
constexpr std::uint32_t FloatInfinity = 0x7F800000;
constexpr std::uint32_t FloatQuiet = 0x00400000;
// From the bias of halves to that of floats.
constexpr std::uint32_t Rebias = (127U - 15U) << 23;
// The float whose last place is the smallest half, 2^-24, and that which is the smallest normal
// one, 2^-14.
constexpr std::uint32_t SubnormalMagic = (127U - 1U) << 23;
constexpr std::uint32_t SmallestNormal = (127U - 14U) << 23;
// From here on a float is no finite half, even before it is rounded.
constexpr std::uint32_t TooLarge = (127U + 16U) << 23;
} // namespace HalfBits

inline float floatOfBits(std::uint32_t bits) noexcept {
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline std::uint32_t bitsOfFloat(float value) noexcept {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// Exact; what is not a number stays so, and becomes quiet.
inline float halfToFloat(std::uint16_t half) noexcept {
    using namespace HalfBits;
    const std::uint32_t sign = (half & Sign) << 16;
    const std::uint32_t magnitude = half & Magnitude;
    const std::uint32_t shifted = magnitude << FractionShift;
    std::uint32_t bits = shifted + Rebias;
    if (magnitude >= Infinity)
        bits = (bits + Rebias) | (magnitude > Infinity ? FloatQuiet : 0U);
    else if (magnitude <= Payload)
        bits = bitsOfFloat(floatOfBits(shifted + SmallestNormal) - floatOfBits(SmallestNormal));
    return floatOfBits(bits | sign);
}

// The nearest half, of two the even one; from 65520 on infinity.
inline std::uint16_t floatToHalf(float value) noexcept {
    using namespace HalfBits;
    const std::uint32_t all = bitsOfFloat(value);
    const std::uint32_t sign = all >> 16 & Sign;
    const std::uint32_t bits = all & FloatMagnitude;
    std::uint32_t half = 0;
    if (bits >= TooLarge) {
        half = Infinity;
        if (bits > FloatInfinity)
            half |= Quiet | (bits >> FractionShift & Payload);
    } else if (bits < SmallestNormal) {
        half = bitsOfFloat(floatOfBits(bits) + floatOfBits(SubnormalMagic)) - SubnormalMagic;
    } else {
        const std::uint32_t odd = bits >> FractionShift & 1U;
        half = (bits - Rebias + 0xFFFU + odd) >> FractionShift;
    }
    return static_cast<std::uint16_t>(half | sign);
}

// A sample of a row.
struct Half {
    Half() = default;
    explicit Half(float value) noexcept
        : bits(floatToHalf(value)) {}
    explicit operator float() const noexcept { return halfToFloat(bits); }

    std::uint16_t bits = 0;
};

} // namespace Kestrel::UI
