#pragma once

#include <cstdint>
#include <cstring>

/** \file
    Half floats (IEEE 754 binary16) as codes to count by. */
namespace Kestrel::UI::HalfCode {

constexpr int Count = 65536;
constexpr std::uint32_t Infinity = 0x7C00;
constexpr std::uint32_t Sign = 0x8000;
/** The one code of what is no number. */
constexpr std::uint16_t NotANumber = 0x7E00;

// Of floats, by their bits.
constexpr std::uint32_t FloatInfinity = 0x7F800000;
constexpr std::uint32_t TooLarge = (127U + 16U) << 23;       // infinity, even before it is rounded
constexpr std::uint32_t SmallestNormal = (127U - 14U) << 23; // 2^-14
constexpr std::uint32_t SubnormalMagic = (127U - 1U) << 23;  // its last place is 2^-24
constexpr std::uint32_t Rebias = (127U - 15U) << 23;
constexpr int FractionShift = 23 - 10;

/** The nearest half, of two the even one; from 65520 on infinity. */
inline std::uint16_t of(float value) noexcept {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const std::uint32_t sign = bits >> 16 & Sign;
    bits &= 0x7FFFFFFF;
    if (bits > FloatInfinity)
        return NotANumber;
    std::uint32_t half = Infinity;
    if (bits < SmallestNormal) {
        float sum = 0;
        float magic = 0;
        std::memcpy(&sum, &bits, sizeof sum);
        std::memcpy(&magic, &SubnormalMagic, sizeof magic);
        sum += magic;
        std::memcpy(&half, &sum, sizeof half);
        half -= SubnormalMagic;
    } else if (bits < TooLarge) {
        half = (bits - Rebias + 0xFFFU + (bits >> FractionShift & 1U)) >> FractionShift;
    }
    return static_cast<std::uint16_t>(half | sign);
}

/** The value of a code; exact. */
inline float value(std::uint32_t code) noexcept {
    const std::uint32_t sign = (code & Sign) << 16;
    const std::uint32_t magnitude = code & 0x7FFF;
    std::uint32_t bits = magnitude << FractionShift;
    if (magnitude >= Infinity) {
        bits |= FloatInfinity;
    } else if (magnitude < 0x0400) {
        const float small = float(magnitude) * 0x1p-24F;
        std::memcpy(&bits, &small, sizeof bits);
    } else {
        bits += Rebias;
    }
    bits |= sign;
    float result = 0;
    std::memcpy(&result, &bits, sizeof result);
    return result;
}

} // namespace Kestrel::UI::HalfCode
