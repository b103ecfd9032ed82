#include <KxUI/scopes/ExactSums_p.h>

#include <KxUI/scopes/CountingKernels_p.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Kestrel::UI {
namespace {

constexpr int FractionBits = 23;
constexpr std::uint32_t Hidden = 1U << FractionBits;
constexpr int HalfBits = 32;
constexpr float HalfOverflow = 65520; // from here on half floats are infinite

// What a digit of an exponent is worth; subnormal floats share that of the smallest normal ones.
int weight(std::size_t exponent) noexcept {
    return std::max(int(exponent), 1) - 127 - FractionBits;
}

} // namespace

void ExactSums::add(float value) noexcept {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const std::size_t exponent = bits >> FractionBits & 0xFF;
    const std::uint32_t digits = (bits & (Hidden - 1)) | (exponent > 0 ? Hidden : 0);
    Exponent& sums = m_exponents[exponent];
    sums.sum += bits >> 31 ? -std::int64_t(digits) : std::int64_t(digits);
    const std::uint64_t square = std::uint64_t(digits) * digits;
    sums.low += square & 0xFFFFFFFF;
    sums.high += square >> HalfBits;
    m_minimum = m_count == 0 ? value : std::min(m_minimum, value);
    m_maximum = m_count == 0 ? value : std::max(m_maximum, value);
    m_below += value < 0 ? 1 : 0;
    m_above += value > 1 ? 1 : 0;
    m_withinEbuR103 += value >= EbuR103Lower && value <= EbuR103Upper ? 1 : 0;
    m_tooHigh += value >= HalfOverflow ? 1 : 0;
    m_tooLow += value <= -HalfOverflow ? 1 : 0;
    ++m_count;
}

void ExactSums::add(const ExactSums& other) noexcept {
    if (other.m_count == 0)
        return;
    for (std::size_t i = 0; i < m_exponents.size(); ++i) {
        m_exponents[i].sum += other.m_exponents[i].sum;
        m_exponents[i].low += other.m_exponents[i].low;
        m_exponents[i].high += other.m_exponents[i].high;
    }
    m_minimum = m_count == 0 ? other.m_minimum : std::min(m_minimum, other.m_minimum);
    m_maximum = m_count == 0 ? other.m_maximum : std::max(m_maximum, other.m_maximum);
    m_below += other.m_below;
    m_above += other.m_above;
    m_withinEbuR103 += other.m_withinEbuR103;
    m_tooHigh += other.m_tooHigh;
    m_tooLow += other.m_tooLow;
    m_count += other.m_count;
}

double ExactSums::mean() const noexcept {
    double sum = 0;
    for (std::size_t i = 0; i < m_exponents.size(); ++i)
        sum += std::ldexp(double(m_exponents[i].sum), weight(i));
    return m_count == 0 ? 0 : sum / double(m_count);
}

double ExactSums::deviation() const noexcept {
    // The difference below would be a rounding error.
    if (m_count == 0 || m_minimum == m_maximum)
        return 0;
    double squares = 0;
    for (std::size_t i = 0; i < m_exponents.size(); ++i) {
        const double digits =
            double(m_exponents[i].low) + std::ldexp(double(m_exponents[i].high), HalfBits);
        squares += std::ldexp(digits, 2 * weight(i));
    }
    const double average = mean();
    return std::sqrt(std::max(squares / double(m_count) - average * average, 0.0));
}

} // namespace Kestrel::UI
