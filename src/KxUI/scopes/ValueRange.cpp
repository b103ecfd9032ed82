#include <KxUI/scopes/ValueRange.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr float Limit = std::numeric_limits<float>::max() / 4;

// `offset` is the code of 0 and `range` the codes of 1.
ValueRange centered(int bits, double offset, double range, int codesPerBin) noexcept {
    const int codes = 1 << bits;
    const int step = std::clamp(codesPerBin, 1, codes);
    const int bins = (codes + step - 1) / step;
    return {float((-0.5 - offset) / range), float((bins * step - 0.5 - offset) / range), bins};
}

} // namespace

ValueRange ValueRange::ofCodes(int bits, bool fullRange, int codesPerBin) noexcept {
    const int n = std::clamp(bits, 8, 12);
    const double unit = double(1 << (n - 8));
    return fullRange ? centered(n, 0, double((1 << n) - 1), codesPerBin)
                     : centered(n, 16 * unit, 219 * unit, codesPerBin);
}

ValueRange ValueRange::ofChromaCodes(int bits, bool fullRange, int codesPerBin) noexcept {
    const int n = std::clamp(bits, 8, 12);
    const double unit = double(1 << (n - 8));
    return fullRange ? centered(n, double(1 << (n - 1)), double((1 << n) - 1), codesPerBin)
                     : centered(n, 128 * unit, 224 * unit, codesPerBin);
}

ValueRange ValueRange::normalized() const noexcept {
    const auto finite = [](float value, float otherwise) {
        return value == value ? std::clamp(value, -Limit, Limit) : otherwise;
    };
    ValueRange range{finite(lower, 0.0F), finite(upper, 1.0F), std::clamp(bins, 1, MostBins)};
    if (range.upper < range.lower)
        std::swap(range.lower, range.upper);
    // What is narrower could not tell its bins apart.
    const float size = std::max(std::fabs(range.lower), std::fabs(range.upper));
    const float narrowest = std::max(size, 1e-30F) * 0x1p-10F;
    if (!(range.upper - range.lower >= narrowest)) {
        const float middle = range.lower + (range.upper - range.lower) / 2;
        range.lower = middle - narrowest;
        range.upper = middle + narrowest;
    }
    return range;
}

} // namespace Kestrel::UI
