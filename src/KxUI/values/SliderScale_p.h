#pragma once

#include <vector>

namespace Kestrel::UI {

/** Where real values lie along a groove: a part of it from 0 to 1, which pixels are read from. */
struct SliderScale {
    double minimum = 0.0;
    double maximum = 1.0;
    double exponent = 1.0; ///< above 1 the low end has more room
    double origin = 0.0;   ///< where the low end is, in logical pixels along the groove
    double length = 0.0;   ///< from there to the high end; negative where that lies before it

    /** The part of the groove up to a value; 0 or 1 for one outside the range. */
    double partOf(double value) const;
    /** The value at a part of the groove; exactly the ends at 0 and 1. */
    double valueOf(double part) const;
    double pixelOf(double value) const { return pixelOfPart(partOf(value)); }
    double pixelOfPart(double part) const { return origin + part * length; }
    /** Below 0 or above 1 beyond the ends; 0 on a groove without length. */
    double partAt(double pixel) const;
    double clamped(double value) const;
};

/** 1, 2 or 5 times a power of ten. Multiples are the doubles that are nearest to them, so that
    three steps of 0.1 are 0.3. */
struct NiceStep {
    int digit = 1;
    int exponent = 0;

    /** The smallest that is not below `least`, which is positive. */
    static NiceStep notBelow(double least);
    /** The nearest to `wanted`, which is positive. */
    static NiceStep nearestTo(double wanted);

    double value() const { return times(1.0); }
    double times(double count) const;
    NiceStep next() const;
    bool divides(const NiceStep& larger) const;
};

/** The step that an arrow key takes on a range without one of its own: about a hundredth. */
double automaticStep(double minimum, double maximum);

/** `value` rounded to the nearest multiple of `grid`; unchanged without one. */
double onGrid(double value, double grid);

/** A tick of a linear slider. */
struct SliderTick {
    double value = 0.0;
    double pixel = 0.0;
    bool isLong = false; ///< has a label where labels are drawn, and is snapped to
};

/** How far apart ticks stand at least, in logical pixels. */
struct SliderTickSpacing {
    double ticks = 8.0;
    double longTicks = 40.0;
    double smallest = 0.0; ///< a step that ticks do not go below, in units of the value
};

/** The ticks of a scale, from its low end to its high one. */
struct SliderTicks {
    std::vector<SliderTick> ticks;
    NiceStep longStep;

    static SliderTicks of(const SliderScale& scale, const SliderTickSpacing& spacing);
    int longCount() const;
    /** How many significant digits tell the labels from each other. */
    int digits(const SliderScale& scale) const;
};

} // namespace Kestrel::UI
