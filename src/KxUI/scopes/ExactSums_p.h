#pragma once

#include <array>
#include <cstdint>

namespace Kestrel::UI {

/** Adds up floats without rounding, so that the order, and who added which, does not matter: the
    digits of all floats of one exponent are integers. For at most 2^32 values. */
class ExactSums {
public:
    /** Adds a finite value. */
    void add(float value) noexcept;
    void add(const ExactSums& other) noexcept;

    std::uint64_t count() const noexcept { return m_count; }
    float minimum() const noexcept { return m_minimum; }
    float maximum() const noexcept { return m_maximum; }
    double mean() const noexcept;
    /** Of the whole population. */
    double deviation() const noexcept;
    std::uint64_t below() const noexcept { return m_below; } ///< values below 0
    std::uint64_t above() const noexcept { return m_above; } ///< values above 1
    std::uint64_t withinEbuR103() const noexcept { return m_withinEbuR103; }
    /** Values that are infinite as half floats. */
    std::uint64_t tooHigh() const noexcept { return m_tooHigh; }
    std::uint64_t tooLow() const noexcept { return m_tooLow; }

private:
    struct Exponent {
        std::int64_t sum = 0;
        // Of the squares of 48 bits.
        std::uint64_t low = 0;
        std::uint64_t high = 0;
    };

    std::array<Exponent, 255> m_exponents{};
    std::uint64_t m_count = 0;
    std::uint64_t m_below = 0;
    std::uint64_t m_above = 0;
    std::uint64_t m_withinEbuR103 = 0;
    std::uint64_t m_tooHigh = 0;
    std::uint64_t m_tooLow = 0;
    float m_minimum = 0;
    float m_maximum = 0;
};

} // namespace Kestrel::UI
