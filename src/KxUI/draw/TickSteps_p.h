#pragma once

#include <KxUI/draw/Ticks.h>

#include <vector>

namespace Kestrel::UI {

/** The double next to `digits` times ten to the power of `exponent`, which may be negative. */
double powerOfTen(double digits, int exponent);

/** A step of ticks, as a small whole number and a power of its base: multiples of 0.1 are so rounded
    once, as a reader of "0.3" would. */
class TickStep {
public:
    /** The smallest step of the unit that is at least as large; `size` is above 0 and finite. */
    static TickStep atLeast(double size, Ticks::Unit unit);

    double size() const;
    /** The next larger step. */
    TickStep next(Ticks::Unit unit) const;
    /** What a step is divided into by marks without labels; of size 0 where nothing divides it. */
    TickStep part(Ticks::Unit unit) const;
    /** `i` steps, rounded once. */
    double times(double i) const;
    /** The multiples within a range, ascending; none where they were more than `most`. */
    std::vector<double> within(double lower, double upper, double most) const;

private:
    double m_digits = 0;
    int m_exponent = 0;
    bool m_binary = false;
};

} // namespace Kestrel::UI
