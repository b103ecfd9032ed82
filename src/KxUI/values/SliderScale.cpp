#include <KxUI/values/SliderScale_p.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace Kestrel::UI {
namespace {

// The range of all finite doubles has a width that is none of them.
double widthOf(double minimum, double maximum, double* scale) {
    const double width = maximum - minimum;
    *scale = std::isfinite(width) ? 1.0 : 0.5;
    return std::isfinite(width) ? width : maximum * 0.5 - minimum * 0.5;
}

// How near the ends come to each other for values that are `step` apart: a curved scale is densest
// at one of them.
double leastDistance(const SliderScale& scale, double step) {
    const double length = std::fabs(scale.length);
    return length *
           std::min(scale.partOf(scale.minimum + step), 1.0 - scale.partOf(scale.maximum - step));
}

} // namespace

double SliderScale::clamped(double value) const {
    return std::clamp(value, minimum, maximum);
}

double SliderScale::partOf(double value) const {
    double halving = 1.0;
    const double width = widthOf(minimum, maximum, &halving);
    if (!(width > 0.0) || !(value > minimum))
        return 0.0;
    if (value >= maximum)
        return 1.0;
    const double straight = (value * halving - minimum * halving) / width;
    return exponent == 1.0 ? straight : std::pow(straight, 1.0 / exponent);
}

double SliderScale::valueOf(double part) const {
    if (!(part > 0.0))
        return minimum;
    if (part >= 1.0)
        return maximum;
    const double straight = exponent == 1.0 ? part : std::pow(part, exponent);
    double halving = 1.0;
    const double width = widthOf(minimum, maximum, &halving);
    // From the nearer end, so that nothing lies beyond one.
    const double value = straight < 0.5 ? minimum + straight * width / halving
                                        : maximum - (1.0 - straight) * width / halving;
    return clamped(value);
}

double SliderScale::partAt(double pixel) const {
    return length == 0.0 ? 0.0 : (pixel - origin) / length;
}

NiceStep NiceStep::notBelow(double least) {
    // A part in 10^12 is what the computation of `least` may have lost.
    const double wanted = std::clamp(least, DBL_MIN * 10.0, DBL_MAX * 0.01) * (1.0 - 1e-12);
    NiceStep step{1, static_cast<int>(std::floor(std::log10(wanted)))};
    while (step.value() < wanted)
        step = step.next();
    return step;
}

NiceStep NiceStep::nearestTo(double wanted) {
    const NiceStep above = notBelow(wanted);
    const NiceStep below = above.digit == 1   ? NiceStep{5, above.exponent - 1}
                           : above.digit == 2 ? NiceStep{1, above.exponent}
                                              : NiceStep{2, above.exponent};
    // By ratio: 1.4 is nearer to 1, 1.5 to 2.
    return above.value() / wanted <= wanted / below.value() ? above : below;
}

double NiceStep::times(double count) const {
    const double whole = count * digit;
    return exponent < 0 ? whole / std::pow(10.0, -exponent) : whole * std::pow(10.0, exponent);
}

NiceStep NiceStep::next() const {
    if (digit == 5)
        return {1, exponent + 1};
    return {digit == 1 ? 2 : 5, exponent};
}

bool NiceStep::divides(const NiceStep& larger) const {
    return larger.exponent > exponent || (larger.exponent == exponent && larger.digit % digit == 0);
}

double automaticStep(double minimum, double maximum) {
    const double hundredth = maximum * 0.01 - minimum * 0.01;
    return hundredth > 0.0 ? NiceStep::nearestTo(hundredth).value() : 0.0;
}

double onGrid(double value, double grid) {
    if (!(grid > 0.0))
        return value;
    const double count = std::round(value / grid);
    return std::isfinite(count) ? count * grid : value;
}

SliderTicks SliderTicks::of(const SliderScale& scale, const SliderTickSpacing& spacing) {
    SliderTicks plan;
    double halving = 1.0;
    const double width = widthOf(scale.minimum, scale.maximum, &halving) / halving;
    const double length = std::fabs(scale.length);
    if (!(width > 0.0) || !std::isfinite(width) || length < spacing.ticks)
        return plan;
    const double least = std::max({width * spacing.ticks / length, spacing.smallest, DBL_MIN});
    const auto isApart = [&](const NiceStep& step, double distance) {
        return step.value() >= width || leastDistance(scale, step.value()) >= distance - 1e-9;
    };
    NiceStep step = NiceStep::notBelow(least);
    const double farthest = std::max(std::fabs(scale.minimum), std::fabs(scale.maximum));
    if (step.value() < farthest * DBL_EPSILON * 4.0)
        return plan; // doubles this large do not tell the ticks apart
    plan.longStep = step;
    while (!isApart(plan.longStep, spacing.longTicks))
        plan.longStep = plan.longStep.next();
    while (!step.divides(plan.longStep) || !isApart(step, spacing.ticks))
        step = step.next();

    const double slack = 1e-9; // of a step: what a division may lose at an end
    const double first = std::ceil(scale.minimum / step.value() - slack);
    const double last = std::floor(scale.maximum / step.value() + slack);
    for (double count = first; count <= last; ++count) {
        const double value = scale.clamped(step.times(count) + 0.0);
        const double inLong = value / plan.longStep.value();
        plan.ticks.push_back(
            {value, scale.pixelOf(value), std::fabs(inLong - std::round(inLong)) < 1e-6});
    }
    return plan;
}

int SliderTicks::longCount() const {
    return static_cast<int>(std::count_if(ticks.begin(), ticks.end(),
                                          [](const SliderTick& tick) { return tick.isLong; }));
}

int SliderTicks::digits(const SliderScale& scale) const {
    const double farthest = std::max(std::fabs(scale.minimum), std::fabs(scale.maximum));
    const double needed = std::ceil(std::log10(farthest / longStep.value())) + 1.0;
    return static_cast<int>(std::clamp(needed, 6.0, 15.0));
}

} // namespace Kestrel::UI
