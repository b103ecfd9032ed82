#include <KxUI/draw/Ticks.h>

#include <KxUI/draw/TickSteps_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double MostTicks = 1000;

// Steps of smaller ranges have no digits left.
constexpr double LeastRange = 1e-290;

// Labels closer than this cannot be read, whatever their length is said to be.
constexpr double LeastDistance = 8;

bool isPlannable(double lower, double upper) {
    return std::isfinite(lower) && std::isfinite(upper) && std::isfinite(upper - lower) &&
           upper - lower > LeastRange;
}

double largestOf(double lower, double upper) {
    return std::max(std::abs(lower), std::abs(upper));
}

// A plan in the making, for a range that can be planned.
class Plan {
public:
    Plan(double lower, double upper, const Ticks::Rules& rules)
        : m_lower(lower)
        , m_upper(upper)
        , m_rules(rules) {}

    Ticks make() {
        const double distance = m_rules.length > 0 ? LeastDistance / m_rules.length : 1;
        const double atLeast = (m_upper - m_lower) * std::max(distance, 1 / (MostTicks - 1));
        TickStep step = TickStep::atLeast(atLeast, m_rules.unit);
        Ticks ticks = withStep(step);
        // Labels get longer with every digit that a finer step needs, so the next one is tried as a
        // whole.
        while (ticks.values.size() > 1 && !fits(ticks)) {
            step = step.next(m_rules.unit);
            ticks = withStep(step);
        }
        addMinor(ticks, step);
        return ticks;
    }

    Ticks makeLogarithmic() {
        const double decades = std::log10(m_upper) - std::log10(m_lower);
        if (decades < 1)
            return make();
        const double pixels = m_rules.length / decades;
        Ticks ticks;
        for (const auto& digits : {std::vector<int>{1, 2, 5}, std::vector<int>{1}}) {
            ticks = ofDecades(digits, 1);
            if (fits(ticks))
                break;
        }
        for (int every = 2; ticks.values.size() > 1 && !fits(ticks); ++every)
            ticks = ofDecades({1}, every);
        if (pixels >= LeastDistance * 2)
            ticks.minor = ofDecades({1, 2, 3, 4, 5, 6, 7, 8, 9}, 1).values;
        return ticks;
    }

private:
    QString textOf(double value, double step) const {
        if (m_rules.formatter)
            return m_rules.formatter(value);
        // Powers of ten have no step: each says what itself needs.
        const bool isAlone = step == 0;
        return Ticks::text(value, isAlone ? value : step,
                           isAlone ? value : largestOf(m_lower, m_upper), m_rules.unit,
                           m_rules.locale);
    }

    double placeOf(double value) const {
        const double part = m_rules.logarithmic ? (std::log(value) - std::log(m_lower)) /
                                                      (std::log(m_upper) - std::log(m_lower))
                                                : (value - m_lower) / (m_upper - m_lower);
        return part * m_rules.length;
    }

    Ticks withStep(const TickStep& step) const {
        Ticks ticks;
        ticks.step = step.size();
        ticks.values = step.within(m_lower, m_upper, MostTicks);
        return ticks;
    }

    Ticks ofDecades(const std::vector<int>& digits, int every) const {
        Ticks ticks;
        const int first = int(std::floor(std::log10(m_lower)));
        const int last = int(std::ceil(std::log10(m_upper)));
        for (int exponent = first; exponent <= last; ++exponent) {
            if (exponent % every != 0)
                continue;
            for (const int digit : digits) {
                const double value = powerOfTen(digit, exponent);
                if (value >= m_lower && value <= m_upper)
                    ticks.values.push_back(value);
            }
        }
        return ticks;
    }

    // Gives texts to the ticks, as long as these leave half a label between each two.
    bool fits(Ticks& ticks) const {
        ticks.texts.clear();
        double lastPlace = 0;
        double lastLength = 0;
        for (const double value : ticks.values) {
            const QString text = textOf(value, ticks.step);
            const double length = m_rules.labelLength ? m_rules.labelLength(text) : 0;
            const double place = placeOf(value);
            const double needed = std::max(LeastDistance, 0.75 * (length + lastLength));
            if (!ticks.texts.isEmpty() && place - lastPlace < needed * (1 - 1e-9))
                return false;
            ticks.texts.append(text);
            lastPlace = place;
            lastLength = length;
        }
        return true;
    }

    void addMinor(Ticks& ticks, const TickStep& step) const {
        if (ticks.texts.size() != int(ticks.values.size()))
            fits(ticks);
        const TickStep part = step.part(m_rules.unit);
        if (part.size() <= 0 || !(part.size() / (m_upper - m_lower) * m_rules.length >= 4))
            return;
        ticks.minor = part.within(m_lower, m_upper, MostTicks);
    }

    const double m_lower;
    const double m_upper;
    const Ticks::Rules& m_rules;
};

} // namespace

double Ticks::niceStep(double atLeast, Unit unit) {
    return atLeast > 0 && std::isfinite(atLeast) ? TickStep::atLeast(atLeast, unit).size() : 0;
}

Ticks Ticks::plan(double lower, double upper, const Rules& rules) {
    if (!isPlannable(lower, upper) || (rules.logarithmic && lower <= 0))
        return {};
    Plan plan(lower, upper, rules);
    return rules.logarithmic ? plan.makeLogarithmic() : plan.make();
}

} // namespace Kestrel::UI
