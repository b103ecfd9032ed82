#pragma once

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

/** From the values of an axis to pixels and back. A negative length runs the other way. */
struct AxisScale {
    double lower = 0;
    double upper = 1;
    bool isLogarithmic = false;
    double origin = 0;
    double length = 1;

    /** Limited to what painters can take; not a number for such values, and below 0 on a logarithmic
        axis. */
    double pixel(double value) const {
        // The start is taken off while both are doubles: times since 1970 keep their digits.
        const double part = isLogarithmic ? std::log(value / lower) / std::log(upper / lower)
                                          : (value - lower) / (upper - lower);
        const double place = origin + part * length;
        return std::isnan(place) ? place : std::clamp(place, -1e6, 1e6);
    }

    double value(double pixel) const {
        const double part = (pixel - origin) / length;
        return isLogarithmic ? lower * std::pow(upper / lower, part)
                             : lower + part * (upper - lower);
    }

    /** The range after it was made smaller by `factor` about the value at a pixel. */
    AxisScale zoomed(double pixel, double factor) const {
        return between(pixel - (pixel - origin) / factor,
                       pixel + (origin + length - pixel) / factor);
    }

    /** The same pixels for the values between two of them. */
    AxisScale between(double first, double last) const {
        AxisScale other = *this;
        other.lower = value(first);
        other.upper = value(last);
        return other;
    }
};

} // namespace Kestrel::UI
