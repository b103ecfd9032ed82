// The same with vectors, compiled once for each kind of processor by including this file again and
// again. Every operation is the one of the scalar kernels, in their order, so that results are the
// same bits.

#include <KxUI/color/PixelPacking_p.h>
#include <KxUI/scopes/CountingKernels_p.h>

#include <cmath>
#include <limits>

// As for the rows of pixels: targets that gain nothing over the next lower one, vectors whose length
// is only known at run time, and ARMv7.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL | KXUI_SVE | HWY_RVV | KXUI_ARM_V7)
#if defined(__arm__) || defined(_M_ARM)
#define KXUI_ARM_V7 HWY_NEON
#else
#define KXUI_ARM_V7 0
#endif
#define KXUI_SVE (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "KxUI/scopes/VectorCounting.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#if HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR
#include <KxUI/color/VectorLanes_p.h>
#endif

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR

const CountingKernels& countingKernels() {
    return scalarCountingKernels();
}

#else

namespace Counting {

// Wider than those of the rows of pixels: nothing here changes the order of lanes.
using F = hn::CappedTag<float, CountingLanes>;
using Signed = hn::RebindToSigned<F>;
using Word = hn::RebindToUnsigned<F>;
using HalfLanes = hn::Rebind<std::uint16_t, F>;
using V = hn::Vec<F>;
using Int = hn::Vec<Signed>;
using Mask = hn::Mask<F>;

constexpr std::size_t Lanes = hn::MaxLanes(F());

HWY_INLINE V constant(float value) {
    return hn::Set(F(), value);
}

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX3
HWY_INLINE hn::Vec<HalfLanes> halfBits(V values) {
    return hn::Vec<HalfLanes>{_mm512_cvtps_ph(values.raw, _MM_FROUND_TO_NEAREST_INT)};
}
#else
HWY_INLINE hn::Vec<HalfLanes> halfBits(V values) {
    return halves(values);
}
#endif

HWY_INLINE V load(const float* from) {
    return hn::LoadU(F(), from);
}

HWY_INLINE Mask isNumber(V value) {
    return hn::Eq(value, value);
}

HWY_INLINE void storeShorts(Int values, std::uint16_t* to) {
    hn::StoreU(hn::DemoteTo(HalfLanes(), values), HalfLanes(), to);
}

HWY_INLINE void storeWords(Int values, std::uint32_t* to) {
    hn::StoreU(hn::BitCast(Word(), values), Word(), to);
}

// ---- Codes.

void halfCodes(const float* values, std::size_t pixels, std::uint16_t* codes) {
    // The one that HalfCode::NotANumber stands for.
    const V none = constant(std::numeric_limits<float>::quiet_NaN());
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V value = load(values + i);
        hn::StoreU(halfBits(hn::IfThenElse(isNumber(value), value, none)), HalfLanes(), codes + i);
    }
}

void unitCodes(const float* values, std::size_t pixels, float range, std::uint16_t* codes) {
    const V factor = constant(range);
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V code = hn::Add(hn::Mul(load(values + i), factor), constant(0.5F));
        storeShorts(whole(code), codes + i);
    }
}

// ---- Bins and cells.

struct Binning {
    explicit Binning(const ValueRange& range)
        : lower(constant(range.lower))
        , upper(constant(range.upper))
        , scale(constant(range.scale()))
        , last(hn::Set(Signed(), range.bins - 1)) {}

    HWY_INLINE Mask isInside(V value) const {
        return hn::And(hn::Ge(value, lower), hn::Le(value, upper));
    }

    // The bin of a value inside, else 0.
    HWY_INLINE Int bin(V value, Mask inside) const {
        const V place = hn::Mul(hn::Sub(value, lower), scale);
        return hn::Min(whole(hn::IfThenElseZero(inside, place)), last);
    }

    V lower, upper, scale;
    Int last;
};

HWY_INLINE void storeBins(Int bins, const std::uint16_t* places, std::uint16_t* to) {
    const HalfLanes shorts;
    hn::StoreU(hn::Add(hn::LoadU(shorts, places), hn::DemoteTo(shorts, bins)), shorts, to);
}

void bins(const float* values, std::size_t pixels, const ValueRange& range,
          const std::uint16_t* places, std::uint16_t* to) {
    const Binning binning(range);
    const Int below = hn::Set(Signed(), range.below());
    const Int above = hn::Set(Signed(), range.above());
    const Int none = hn::Set(Signed(), range.notANumber());
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V value = load(values + i);
        const Mask inside = binning.isInside(value);
        Int bin = binning.bin(value, inside);
        // Mostly all values lie inside.
        if (HWY_UNLIKELY(!hn::AllTrue(F(), inside))) {
            const auto choose = [](Mask mask, Int yes, Int no) HWY_ATTR {
                return hn::IfThenElse(hn::RebindMask(Signed(), mask), yes, no);
            };
            const Int outside = choose(hn::Lt(value, binning.lower), below,
                                       choose(hn::Gt(value, binning.upper), above, none));
            bin = choose(inside, bin, outside);
        }
        storeBins(bin, places + i, to + i);
    }
}

struct MatrixRow {
    explicit MatrixRow(const std::array<float, 3>& row)
        : red(constant(row[0]))
        , green(constant(row[1]))
        , blue(constant(row[2])) {}

    HWY_INLINE V of(V r, V g, V b) const {
        return hn::Add(hn::Add(hn::Mul(red, r), hn::Mul(green, g)), hn::Mul(blue, b));
    }

    V red, green, blue;
};

void yCbCr(const ColorPlanes& from, std::size_t pixels, const RgbToYCbCrMatrix& matrix,
           const YCbCrPlanes& to) {
    const MatrixRow luma(matrix.luma);
    const MatrixRow cb(matrix.cb);
    const MatrixRow cr(matrix.cr);
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V red = load(from.red + i);
        const V green = load(from.green + i);
        const V blue = load(from.blue + i);
        hn::StoreU(luma.of(red, green, blue), F(), to.luma + i);
        if (!to.cb)
            continue;
        hn::StoreU(cb.of(red, green, blue), F(), to.cb + i);
        hn::StoreU(cr.of(red, green, blue), F(), to.cr + i);
    }
}

void largest(const ColorPlanes& from, std::size_t pixels, float* to) {
    const V none = constant(std::numeric_limits<float>::quiet_NaN());
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V red = load(from.red + i);
        const V green = load(from.green + i);
        const V blue = load(from.blue + i);
        const V two = hn::IfThenElse(hn::Gt(red, green), red, green);
        const V three = hn::IfThenElse(hn::Gt(two, blue), two, blue);
        const Mask numbers = hn::And(hn::And(isNumber(red), isNumber(green)), isNumber(blue));
        hn::StoreU(hn::IfThenElse(numbers, three, none), F(), to + i);
    }
}

void vectorCells(const ColorPlanes& colors, const YCbCrPlanes& from, std::size_t pixels,
                 const VectorRange& range, std::uint32_t* cells) {
    const Binning binning(range.chroma);
    const VectorSlots slot(range.chroma.bins);
    const Int size = hn::Set(Signed(), range.chroma.bins);
    const Int outside = hn::Set(Signed(), int(slot.outside()));
    const Int none = hn::Set(Signed(), int(slot.notANumber()));
    const Int gated = hn::Set(Signed(), int(slot.gated()));
    const V lowest = constant(range.lumaLower);
    const V highest = constant(range.lumaUpper);
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V cb = load(from.cb + i);
        const V cr = load(from.cr + i);
        const V luma = load(from.luma + i);
        const Mask inside = hn::And(binning.isInside(cb), binning.isInside(cr));
        const Int cell = hn::Add(hn::Mul(binning.bin(cr, inside), size), binning.bin(cb, inside));
        const Mask numbers =
            hn::And(hn::And(isNumber(load(colors.red + i)), isNumber(load(colors.green + i))),
                    isNumber(load(colors.blue + i)));
        const Mask closed = hn::Or(hn::Lt(luma, lowest), hn::Gt(luma, highest));
        const auto choose = [](Mask mask, Int yes, Int no) HWY_ATTR {
            return hn::IfThenElse(hn::RebindMask(Signed(), mask), yes, no);
        };
        const Int open = choose(closed, gated, choose(inside, cell, outside));
        storeWords(choose(numbers, open, none), cells + i);
    }
}

void solidCells(const ColorPlanes& from, std::size_t pixels, const ValueRange& range,
                std::uint32_t* cells) {
    const Binning binning(range);
    const SolidSlots slot(range.bins);
    const Int edge = hn::Set(Signed(), range.bins);
    const Int outside = hn::Set(Signed(), int(slot.outside()));
    const Int none = hn::Set(Signed(), int(slot.notANumber()));
    // The cell next to what lies outside.
    const auto nearest = [&binning](V value, Mask inside) HWY_ATTR {
        const Mask above = hn::Gt(value, binning.upper);
        return hn::IfThenElse(hn::RebindMask(Signed(), above), binning.last,
                              binning.bin(value, inside));
    };
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const V red = load(from.red + i);
        const V green = load(from.green + i);
        const V blue = load(from.blue + i);
        const Mask redInside = binning.isInside(red);
        const Mask greenInside = binning.isInside(green);
        const Mask blueInside = binning.isInside(blue);
        const Int plane =
            hn::Add(hn::Mul(nearest(blue, blueInside), edge), nearest(green, greenInside));
        const Int cell = hn::Add(hn::Mul(plane, edge), nearest(red, redInside));
        const Mask inside = hn::And(hn::And(redInside, greenInside), blueInside);
        const Mask numbers = hn::And(hn::And(isNumber(red), isNumber(green)), isNumber(blue));
        const Int placed =
            hn::IfThenElse(hn::RebindMask(Signed(), inside), cell, hn::Add(cell, outside));
        storeWords(hn::IfThenElse(hn::RebindMask(Signed(), numbers), placed, none), cells + i);
    }
}

// Whether red, green, blue and luma lie within.
HWY_INLINE Mask areWithin(const ColorPlanes& colors, const float* luma, std::size_t i, float lower,
                          float upper) {
    const V low = constant(lower);
    const V high = constant(upper);
    const auto within = [low, high](const float* from) HWY_ATTR {
        const V value = load(from);
        return hn::And(hn::Ge(value, low), hn::Le(value, high));
    };
    return hn::And(hn::And(within(colors.red + i), within(colors.green + i)),
                   hn::And(within(colors.blue + i), within(luma + i)));
}

void legal(const ColorPlanes& colors, const float* luma, std::size_t pixels, LegalCounts& counts) {
    for (std::size_t i = 0; i < pixels; i += Lanes) {
        const Mask first = hn::FirstN(F(), pixels - i < Lanes ? pixels - i : Lanes);
        const Mask illegal = hn::AndNot(areWithin(colors, luma, i, 0.0F, 1.0F), first);
        // The wider range holds all of the narrower one.
        if (HWY_LIKELY(hn::AllFalse(F(), illegal)))
            continue;
        counts.illegal += hn::CountTrue(F(), illegal);
        const Mask outside =
            hn::AndNot(areWithin(colors, luma, i, EbuR103Lower, EbuR103Upper), first);
        counts.outsideEbuR103 += hn::CountTrue(F(), outside);
    }
}

// ---- Counters.

void addCounters(const std::uint16_t* counters, std::size_t count, std::uint32_t* sums) {
    const Word words;
    const HalfLanes shorts;
    std::size_t i = 0;
    for (; i + Lanes <= count; i += Lanes) {
        const auto added = hn::PromoteTo(words, hn::LoadU(shorts, counters + i));
        hn::StoreU(hn::Add(hn::LoadU(words, sums + i), added), words, sums + i);
    }
    for (; i < count; ++i)
        sums[i] += counters[i];
}

} // namespace Counting

const CountingKernels& countingKernels() {
    using namespace Counting;
    static const CountingKernels kernels{hwy::TargetName(HWY_TARGET),
                                         &Counting::halfCodes,
                                         &Counting::unitCodes,
                                         &Counting::bins,
                                         &Counting::yCbCr,
                                         &Counting::largest,
                                         &Counting::vectorCells,
                                         &Counting::solidCells,
                                         &Counting::legal,
                                         &Counting::addCounters};
    return kernels;
}

#endif

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kestrel::UI {

HWY_EXPORT(countingKernels);

const CountingKernels& countingKernels() noexcept {
    return HWY_DYNAMIC_DISPATCH(countingKernels)();
}

} // namespace Kestrel::UI
#endif
