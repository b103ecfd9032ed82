#include <KxUI/draw/TickSteps_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Of a clock, up to a day.
constexpr std::array<double, 17> ClockSteps{1,   2,   5,    10,   15,   30,    60,    120,  300,
                                            600, 900, 1800, 3600, 7200, 10800, 21600, 43200};
constexpr double Day = 86400;

// Rounding of a quotient must not cost a step.
constexpr double Slack = 1 - 1e-9;

struct Digits {
    double digits;
    int exponent;
};

Digits decimal(double size) {
    int exponent = int(std::floor(std::log10(size)));
    for (;; ++exponent)
        for (const double digits : {1.0, 2.0, 5.0})
            if (powerOfTen(digits, exponent) >= size * Slack)
                return {digits, exponent};
}

} // namespace

double powerOfTen(double digits, int exponent) {
    // Powers of ten up to 22 are exact; beyond, the last digit may be another one. A chart asks for the
    // small ones some thousand times a repaint.
    static constexpr std::array<double, 23> Exact{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const auto power = [](int positive) {
        return positive < int(Exact.size()) ? Exact[std::size_t(positive)]
                                            : std::pow(10.0, positive);
    };
    if (exponent >= 0)
        return digits * power(exponent);
    if (exponent >= -300)
        return digits / power(-exponent);
    return digits / 1e300 / std::pow(10.0, -exponent - 300);
}

TickStep TickStep::atLeast(double size, Ticks::Unit unit) {
    TickStep step;
    if (unit == Ticks::Bytes) {
        step.m_binary = true;
        step.m_digits = 1;
        step.m_exponent = std::max(0, int(std::ceil(std::log2(size * Slack))));
        return step;
    }
    if (unit == Ticks::Seconds && size * Slack > 0.5) {
        const auto* const found =
            std::find_if(ClockSteps.begin(), ClockSteps.end(),
                         [size](double each) { return each >= size * Slack; });
        if (found != ClockSteps.end()) {
            step.m_digits = *found;
            return step;
        }
        const Digits days = decimal(std::max(size / Day, 1.0));
        step.m_digits = powerOfTen(days.digits, days.exponent) * Day;
        return step;
    }
    const Digits found = decimal(unit == Ticks::Frames ? std::max(size, 1.0) : size);
    step.m_digits = found.digits;
    step.m_exponent = found.exponent;
    return step;
}

double TickStep::size() const {
    return times(1);
}

TickStep TickStep::next(Ticks::Unit unit) const {
    return atLeast(size() * 1.01, unit);
}

TickStep TickStep::part(Ticks::Unit unit) const {
    TickStep part = *this;
    if (m_binary) {
        part.m_exponent = m_exponent - 2;
        return m_exponent >= 2 ? part : TickStep();
    }
    // Fifths of 1 and 5, halves of 2; what a clock shows by its own steps.
    if (unit == Ticks::Seconds && m_exponent == 0 && m_digits > 1)
        return atLeast(m_digits / 6, unit);
    if (unit == Ticks::Frames && m_exponent == 0)
        return m_digits > 1 ? atLeast(1, unit) : TickStep();
    part.m_digits = m_digits == 5 || m_digits == 2 ? 1 : 2;
    part.m_exponent = m_digits == 5 || m_digits == 2 ? m_exponent : m_exponent - 1;
    return part;
}

double TickStep::times(double i) const {
    const double digits = i * m_digits;
    if (digits == 0)
        return 0; // not -0
    return m_binary ? std::ldexp(digits, m_exponent) : powerOfTen(digits, m_exponent);
}

std::vector<double> TickStep::within(double lower, double upper, double most) const {
    const double step = size();
    const double first = std::ceil(lower / step - 1e-9);
    const double last = std::floor(upper / step + 1e-9);
    std::vector<double> values;
    // Where a step is less than the last digit of the values, they would be the same ones.
    if (!(step > 0 && last - first <= most && std::abs(first) < 9e15 && std::abs(last) < 9e15))
        return values;
    for (double i = first; i <= last; ++i)
        values.push_back(std::clamp(times(i), lower, upper));
    return values;
}

} // namespace Kestrel::UI
