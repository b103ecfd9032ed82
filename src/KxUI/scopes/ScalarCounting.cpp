#include <KxUI/scopes/CountingKernels_p.h>

#include <KxUI/scopes/HalfCode_p.h>

#include <algorithm>
#include <array>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();

bool isNumber(float value) noexcept {
    return value == value;
}

bool isWithin(float value, float lower, float upper) noexcept {
    return value >= lower && value <= upper;
}

void halfCodes(const float* values, std::size_t pixels, std::uint16_t* codes) {
    for (std::size_t i = 0; i < pixels; ++i)
        codes[i] = HalfCode::of(values[i]);
}

void unitCodes(const float* values, std::size_t pixels, float range, std::uint16_t* codes) {
    for (std::size_t i = 0; i < pixels; ++i)
        codes[i] = std::uint16_t(values[i] * range + 0.5F);
}

void bins(const float* values, std::size_t pixels, const ValueRange& range,
          const std::uint16_t* places, std::uint16_t* to) {
    for (std::size_t i = 0; i < pixels; ++i)
        to[i] = std::uint16_t(places[i] + range.binOf(values[i]));
}

void yCbCr(const ColorPlanes& from, std::size_t pixels, const RgbToYCbCrMatrix& matrix,
           const YCbCrPlanes& to) {
    const auto dot = [&from](const std::array<float, 3>& row, std::size_t i) {
        return row[0] * from.red[i] + row[1] * from.green[i] + row[2] * from.blue[i];
    };
    for (std::size_t i = 0; i < pixels; ++i) {
        to.luma[i] = dot(matrix.luma, i);
        if (!to.cb)
            continue;
        to.cb[i] = dot(matrix.cb, i);
        to.cr[i] = dot(matrix.cr, i);
    }
}

void largest(const ColorPlanes& from, std::size_t pixels, float* to) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const float two = from.red[i] > from.green[i] ? from.red[i] : from.green[i];
        const float three = two > from.blue[i] ? two : from.blue[i];
        const bool numbers =
            isNumber(from.red[i]) && isNumber(from.green[i]) && isNumber(from.blue[i]);
        to[i] = numbers ? three : NotANumber;
    }
}

void vectorCells(const ColorPlanes& colors, const YCbCrPlanes& from, std::size_t pixels,
                 const VectorRange& range, std::uint32_t* cells) {
    const ValueRange& chroma = range.chroma;
    const VectorSlots slot(chroma.bins);
    for (std::size_t i = 0; i < pixels; ++i) {
        if (!(isNumber(colors.red[i]) && isNumber(colors.green[i]) && isNumber(colors.blue[i]))) {
            cells[i] = slot.notANumber();
        } else if (from.luma[i] < range.lumaLower || from.luma[i] > range.lumaUpper) {
            cells[i] = slot.gated();
        } else {
            const int x = chroma.binOf(from.cb[i]);
            const int y = chroma.binOf(from.cr[i]);
            const bool inside = x < chroma.bins && y < chroma.bins;
            cells[i] = inside ? std::uint32_t(y * chroma.bins + x) : slot.outside();
        }
    }
}

void solidCells(const ColorPlanes& from, std::size_t pixels, const ValueRange& range,
                std::uint32_t* cells) {
    const SolidSlots slot(range.bins);
    // The cell next to what lies outside.
    const auto nearest = [&range](float value) {
        const int bin = range.binOf(value);
        return std::uint32_t(bin < range.bins ? bin : bin == range.below() ? 0 : range.bins - 1);
    };
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::array<float, 3> rgb{from.red[i], from.green[i], from.blue[i]};
        if (!std::all_of(rgb.begin(), rgb.end(), isNumber)) {
            cells[i] = slot.notANumber();
            continue;
        }
        const bool inside = std::all_of(rgb.begin(), rgb.end(), [&range](float value) {
            return isWithin(value, range.lower, range.upper);
        });
        const auto n = std::uint32_t(range.bins);
        const std::uint32_t cell = (nearest(rgb[2]) * n + nearest(rgb[1])) * n + nearest(rgb[0]);
        cells[i] = cell + (inside ? 0 : slot.outside());
    }
}

void legal(const ColorPlanes& colors, const float* luma, std::size_t pixels, LegalCounts& counts) {
    for (std::size_t i = 0; i < pixels; ++i) {
        const auto all = [&](float lower, float upper) {
            return isWithin(colors.red[i], lower, upper) &&
                   isWithin(colors.green[i], lower, upper) &&
                   isWithin(colors.blue[i], lower, upper) && isWithin(luma[i], lower, upper);
        };
        counts.illegal += all(0.0F, 1.0F) ? 0 : 1;
        counts.outsideEbuR103 += all(EbuR103Lower, EbuR103Upper) ? 0 : 1;
    }
}

void addCounters(const std::uint16_t* counters, std::size_t count, std::uint32_t* sums) {
    for (std::size_t i = 0; i < count; ++i)
        sums[i] += counters[i];
}

} // namespace

const CountingKernels& scalarCountingKernels() noexcept {
    static const CountingKernels kernels{"scalar", &halfCodes,   &unitCodes,  &bins,  &yCbCr,
                                         &largest, &vectorCells, &solidCells, &legal, &addCounters};
    return kernels;
}

} // namespace Kestrel::UI
