#pragma once

#include <KxUI/color/HalfFloat_p.h>

#include <cstdint>

/** \file
    Half floats as codes to count by. */
namespace Kestrel::UI::HalfCode {

constexpr int Count = 65536;
constexpr std::uint32_t Infinity = HalfBits::Infinity;
constexpr std::uint32_t Sign = HalfBits::Sign;
/** The one code of what is no number. */
constexpr std::uint16_t NotANumber = 0x7E00;

/** The nearest half, of two the even one; from 65520 on infinity. */
inline std::uint16_t of(float value) noexcept {
    return value == value ? floatToHalf(value) : NotANumber;
}

/** The value of a code; exact. */
inline float value(std::uint32_t code) noexcept {
    return halfToFloat(std::uint16_t(code));
}

} // namespace Kestrel::UI::HalfCode
