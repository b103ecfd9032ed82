#pragma once

#include <KxUI/Export.h>

namespace Kestrel::UI {

/** Which values are counted, and in how many bins of equal width. Bins are half-open, except that
    `upper` itself belongs to the last one; what lies outside has counters of its own and never
    falls into the first or the last bin. A plain value; its layout is frozen. Any thread. */
struct KXUI_EXPORT ValueRange {
    float lower = -0.1F; ///< where the first bin begins
    float upper = 1.1F;  ///< where the last bin ends; more than `lower`
    int bins = 1024;     ///< 1 to `MostBins`

    /** The most bins that are counted in. */
    static constexpr int MostBins = 4096;

    /** One bin for `codesPerBin` codes of a signal of `bits` bits (8 to 12), each code in the middle
        of its share: luma, or red, green and blue, in ITU-R BT.709's narrow or full range. Anything
        else than whole codes in a bin would show a comb. */
    static ValueRange ofCodes(int bits, bool fullRange, int codesPerBin = 1) noexcept;
    /** The same for Cb and Cr. */
    static ValueRange ofChromaCodes(int bits, bool fullRange, int codesPerBin = 1) noexcept;

    /** This range where it can be counted in: finite, wider than rounding, with 1 to `MostBins`
        bins. Else the nearest that can; a range without width is widened by 2^-10 of its value. */
    ValueRange normalized() const noexcept;

    /** Bins in a unit. */
    float scale() const noexcept { return float(bins) / (upper - lower); }

    /** The bin of a value of a normalized range, or where the rest goes: `below()`, `above()` or
        `notANumber()`. Infinities are below or above. */
    int binOf(float value) const noexcept {
        if (value < lower)
            return below();
        if (value > upper)
            return above();
        if (value != value)
            return notANumber();
        const int bin = int((value - lower) * scale());
        return bin < bins ? bin : bins - 1;
    }
    /** What comes instead of a bin. */
    int below() const noexcept { return bins; }
    int above() const noexcept { return bins + 1; }
    int notANumber() const noexcept { return bins + 2; }

    /** The value in the middle of a bin. */
    double center(int bin) const noexcept {
        return double(lower) + (bin + 0.5) * (double(upper) - double(lower)) / bins;
    }

    /** Whether they are the same, and whether they are not. */
    friend bool operator==(const ValueRange& a, const ValueRange& b) noexcept {
        return a.lower == b.lower && a.upper == b.upper && a.bins == b.bins;
    }
    friend bool operator!=(const ValueRange& a, const ValueRange& b) noexcept { return !(a == b); }
};

} // namespace Kestrel::UI
