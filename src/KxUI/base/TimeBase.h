#pragma once

#include <KxUI/Export.h>

#include <cstdint>

namespace Kestrel::Base {

/** A frame rate as a fraction, in frames per second. Denominator 0 is the invalid base. */
class KXUI_EXPORT TimeBase {
public:
    /** The invalid base, 0/0. */
    constexpr TimeBase() noexcept = default;

    constexpr TimeBase(std::uint64_t numerator, std::uint64_t denominator, int) noexcept
        : m_numerator(numerator)
        , m_denominator(denominator) {}

    constexpr std::uint64_t numerator() const noexcept { return m_numerator; }
    constexpr std::uint64_t denominator() const noexcept { return m_denominator; }

private:
    std::uint64_t m_numerator = 0;
    std::uint64_t m_denominator = 0;
};

} // namespace Kestrel::Base
