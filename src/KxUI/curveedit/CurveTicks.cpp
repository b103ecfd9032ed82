#include <KxUI/curveedit/CurveAxis_p.h>

#include <KxUI/values/LogSliderTicks_p.h>
#include <KxUI/values/SliderScale_p.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace Kestrel::UI {
namespace {

// Up to here ticks by 1, 2 and 5 read well, though they do not stand evenly.
constexpr double NearlyEven = 4;
// Of a decade, 5 stands three tenths before 10: decades this much longer keep it apart from that.
constexpr double DecadeSpacing = 10.0 / 3.0;

class TickPlan {
public:
    TickPlan(const CurveAxis& axis, double spacing, double longSpacing)
        : m_axis(axis)
        , m_span(axis.span())
        , m_spacing(spacing)
        , m_longSpacing(std::max(spacing, longSpacing)) {}

    CurveTicks make() {
        if (!(std::abs(m_axis.length()) >= m_spacing) || !(m_spacing > 0))
            return {};
        findDensities();
        if (m_most < m_least * NearlyEven)
            addSteps();
        else
            addDecades();
        return std::move(m_plan);
    }

private:
    // How many pixels a unit takes at least and at most. It grows towards 0 and nowhere else.
    void findDensities() {
        const double nearest = std::clamp(0.0, m_span.low, m_span.high);
        m_most = std::abs(m_axis.pixelsPerUnit(nearest));
        m_least = std::min(std::abs(m_axis.pixelsPerUnit(m_span.low)),
                           std::abs(m_axis.pixelsPerUnit(m_span.high)));
    }

    void addSteps() {
        NiceStep step = NiceStep::notBelow(m_spacing / m_least);
        const NiceStep longStep = NiceStep::notBelow(m_longSpacing / m_least);
        while (!step.divides(longStep))
            step = step.next();
        const double farthest = std::max(std::abs(m_span.low), std::abs(m_span.high));
        if (step.value() < farthest * DBL_EPSILON * 4)
            return; // doubles this large do not tell the ticks apart
        const double slack = 1e-9;
        const double first = std::ceil(m_span.low / step.value() - slack);
        const double last = std::floor(m_span.high / step.value() + slack);
        for (double count = first; count <= last; ++count) {
            const double value = step.times(count) + 0.0;
            const double inLong = value / longStep.value();
            add(value, std::abs(inLong - std::round(inLong)) < 1e-6);
        }
        m_plan.decimals = std::max(0, -longStep.exponent);
    }

    void addDecades() {
        if (m_axis.scale() == AxisScale::Shadows && m_span.low <= 0 && m_span.high >= 0)
            add(0, true);
        if (m_span.high > 0)
            addDecades(1, std::max(m_span.low, 0.0), m_span.high);
        if (m_span.low < 0)
            addDecades(-1, std::max(-m_span.high, 0.0), -m_span.low);
        std::sort(m_plan.ticks.begin(), m_plan.ticks.end(),
                  [](const CurveTick& a, const CurveTick& b) { return a.value < b.value; });
    }

    // From the far end towards 0, where decades come ever closer to each other.
    void addDecades(double sign, double near, double far) {
        constexpr int Lowest = -300;
        const int first = near > 0 ? std::max(Lowest, int(std::floor(std::log10(near)))) : Lowest;
        double longPixel = HUGE_VAL;
        double pixel = HUGE_VAL;
        for (int decade = int(std::floor(std::log10(far))); decade >= first; --decade) {
            const DecadePixels pixels = pixelsOf(sign, decade);
            if (near == 0 && std::abs(pixels.front() - m_axis.pixelOf(0)) <= m_spacing)
                break;
            addDecade(sign, decade, pixels);
            const bool isApart = std::abs(pixels.front() - pixel) > m_spacing;
            const bool isFar =
                std::abs(pixels.front() - longPixel) > m_longSpacing &&
                (near > 0 || std::abs(pixels.front() - m_axis.pixelOf(0)) > m_longSpacing);
            if (isApart || isFar)
                add(sign * NiceStep{1, decade}.value(), isFar);
            if (isApart)
                pixel = pixels.front();
            if (isFar)
                longPixel = pixels.front();
        }
    }

    DecadePixels pixelsOf(double sign, int decade) const {
        DecadePixels pixels{};
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = m_axis.pixelOf(sign * NiceStep{1, decade}.times(double(i + 1)));
        return pixels;
    }

    // The ticks between two powers of ten.
    void addDecade(double sign, int decade, const DecadePixels& pixels) {
        DecadeFlags all;
        all.fill(true);
        const DecadeFlags marks = thinnedDecade(all, pixels, m_spacing * DecadeSpacing);
        const DecadeFlags labels = thinnedDecade(all, pixels, m_longSpacing * DecadeSpacing);
        for (std::size_t i = 1; i + 1 < pixels.size(); ++i) {
            if (marks[i])
                add(sign * NiceStep{1, decade}.times(double(i + 1)), labels[i]);
        }
    }

    void add(double value, bool isLong) {
        const double slack = 1e-9 * m_span.width();
        if (value >= m_span.low - slack && value <= m_span.high + slack)
            m_plan.ticks.push_back({value, m_axis.pixelOf(value), isLong});
    }

    const CurveAxis& m_axis;
    const CurveSpan m_span;
    const double m_spacing;
    const double m_longSpacing;
    double m_least = 1;
    double m_most = 1;
    CurveTicks m_plan;
};

} // namespace

CurveTicks CurveTicks::of(const CurveAxis& axis, double spacing, double longSpacing) {
    return TickPlan(axis, spacing, longSpacing).make();
}

} // namespace Kestrel::UI
