#pragma once

#include <array>
#include <vector>

namespace Kestrel::UI {

/** The base-10 scale of a logarithmic slider: whole slider positions, `precision` to the decade. */
struct LogScale {
    int minExp = 0;
    int maxExp = 0;
    int precision = 0;
    double minReal = 0;
    double maxReal = 0;

    double valueAt(int position) const;
    /** Clamped into the range and cut toward zero. */
    int positionOf(double value) const;
    /** Clamped into the range and rounded. */
    int nearestTo(double value) const;
    /** Where a value lies along a groove of `length` pixels from `origin`; a negative length runs
        the other way. */
    int tickPosition(double value, int origin, int length) const;
};

/** Which of the ticks 1 to 10 of a decade are kept; [0] is tick 1. */
using DecadeFlags = std::array<bool, 10>;

/** Where the ticks 1 to 10 of a decade are, in pixels; [0] is tick 1. */
using DecadePixels = std::array<double, 10>;

/** Keeps those of the set flags that stand more than `spacing` pixels apart, by halving the decade,
    so that ticks thin out evenly as the scale gets shorter. Ticks 1 and 10 are kept always. */
DecadeFlags thinnedDecade(const DecadeFlags& flags, const DecadePixels& pixels, double spacing);

/** The same for the decades of a slider, which are all as long as the first one. */
DecadeFlags preprocessTicks(const DecadeFlags& flags, const LogScale& scale, int length,
                            int spacing);

/** A tick of the scale. Its value is its number times ten to the power of its decade. */
struct LogTick {
    int pixel = 0;
    double value = 0;
    bool wholePower = false;
    bool marked = false;   ///< the tick itself is drawn
    bool labelled = false; ///< its label would be drawn if there is room
};

/** All ticks from the lower end to the upper one, each pixel at most once. `labelSpacing` has, for
    each decade, how far apart its labels have to stand. */
std::vector<LogTick> planTicks(const LogScale& scale, int origin, int length,
                               const std::vector<int>& labelSpacing);

} // namespace Kestrel::UI
