// The rows with vectors, compiled once for each kind of processor by including this file again and
// again. Every operation is the one of the scalar kernels, in their order, so that results are the
// same bits.

#include <KxUI/color/PixelPacking_p.h>

#include <algorithm>
#include <cstring>
#include <type_traits>

// Left out: targets that gain nothing over the next lower one, vectors whose length is only known
// at run time, and ARMv7, whose division is an approximation.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL | KXUI_SVE | HWY_RVV | KXUI_ARM_V7)
#if defined(__arm__) || defined(_M_ARM)
#define KXUI_ARM_V7 HWY_NEON
#else
#define KXUI_ARM_V7 0
#endif
#define KXUI_SVE (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128)

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "KxUI/color/VectorRowKernels.cpp"
#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR

const RowKernels& rowKernels() {
    return scalarRowKernels();
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using namespace Packing;
using namespace Components;

using Byte = std::uint8_t;

// At most 8 lanes: V210 interleaves six vectors, which wider ones only make harder.
using F = hn::CappedTag<float, 8>;
using Signed = hn::RebindToSigned<F>;
using Word = hn::RebindToUnsigned<F>;
using Bytes = hn::Repartition<Byte, F>;
using V = hn::Vec<F>;
using Int = hn::Vec<Signed>;
using Codes = hn::Vec<Word>;

constexpr std::size_t Lanes = hn::MaxLanes(F());

// Encoding 4:2:2 has most to compute for the bytes that it moves.
using PairFloats = hn::CappedTag<float, 16>;

// So it asks for its planes two kilobytes ahead: the processor by itself stops at the end of a
// page. Only a hint, and by address, since a plane may end before.
HWY_INLINE void askAhead(const float* from) {
    constexpr std::uintptr_t Bytes = 2048;
    hwy::Prefetch(reinterpret_cast<const float*>(reinterpret_cast<std::uintptr_t>(from) + Bytes));
}

// Not std::array, whose constructor is not compiled for the processor at hand.
template <class Lane, std::size_t Count>
struct Several {
    Several() = default;
    Lane each[Count];
};

template <class D = F>
HWY_INLINE hn::Vec<D> constant(float value) {
    return hn::Set(D(), value);
}

HWY_INLINE Codes loadWords(const Byte* from) {
    return hn::BitCast(Word(), hn::LoadU(Bytes(), from));
}

HWY_INLINE void storeWords(Codes words, Byte* to) {
    hn::StoreU(hn::BitCast(Bytes(), words), Bytes(), to);
}

// The bits from `Shift` on of each word.
template <int Shift, int Bits>
HWY_INLINE Int field(Codes words) {
    const Codes mask = hn::Set(Word(), (1U << Bits) - 1U);
    return hn::BitCast(Signed(), hn::And(hn::ShiftRight<Shift>(words), mask));
}

// The whole part. What does not fit an integer becomes the most negative one on x86, where
// `ConvertTo` would spend four more instructions on it.
template <class Floats>
HWY_INLINE auto whole(Floats code) {
    using Integers = hn::RebindToSigned<hn::DFromV<Floats>>;
#if HWY_ARCH_X86
    if constexpr (sizeof(code) == 16)
        return hn::Vec<Integers>{_mm_cvttps_epi32(code.raw)};
    else if constexpr (sizeof(code) == 32)
        return hn::Vec<Integers>{_mm256_cvttps_epi32(code.raw)};
    else
        return hn::Vec<Integers>{_mm512_cvttps_epi32(code.raw)};
#else
    return hn::ConvertTo(Integers(), code);
#endif
}

template <int Shift>
HWY_INLINE Codes placed(Int code) {
    return hn::ShiftLeft<Shift>(hn::BitCast(Word(), code));
}

// ---- Codes to values and back, as in the scalar kernels.

// Division of codes by the range that they span. A product with the reciprocal's upper bits is
// exact, one with its lower bits corrects it, in less time than a division takes. (The product with
// the rounded reciprocal alone is wrong for half of the codes.) For the ranges of 8 and 10 bits,
// 57344 and 65535 the sum is the true quotient of every code, and the tests try them all; the other
// ranges divide.
template <bool ByProducts>
struct Quotient {
    Quotient(float wanted, int lowerBits)
        : range(constant(wanted)) {
        const double reciprocal = 1.0 / double(wanted);
        auto truncated = static_cast<float>(reciprocal);
        std::uint32_t bits = 0;
        std::memcpy(&bits, &truncated, sizeof bits);
        bits &= ~0U << lowerBits;
        std::memcpy(&truncated, &bits, sizeof bits);
        upper = constant(truncated);
        lower = constant(static_cast<float>(reciprocal - double(truncated)));
    }

    HWY_INLINE V of(Int wholeCode) const {
        const V code = hn::ConvertTo(F(), wholeCode);
        if constexpr (ByProducts)
            return hn::Add(hn::Mul(code, upper), hn::Mul(code, lower));
        else
            return hn::Div(code, range);
    }

    V range, upper, lower;
};

// Offsets are subtracted from codes while these are integers, which is as exact and leaves more
// room to the other additions. `Wide` codes have 16 bits.
template <class Kind, bool Wide>
struct Decoding {
    Decoding(const CodeScale& scale, const YCbCrToRgbCoefficients& coefficients)
        : lumaOffset(whole(constant(scale.lumaOffset)))
        , cbOffset(whole(constant(scale.cbOffset)))
        , crOffset(whole(constant(scale.crOffset)))
        , alphaOffset(whole(constant(scale.alphaOffset)))
        , lumaQuotient(scale.lumaRange, LowerBits)
        , chromaQuotient(scale.chromaRange, LowerBits)
        , alphaQuotient(scale.alphaRange, LowerBits)
        , crToRed(constant(coefficients.crToRed))
        , crToGreen(constant(coefficients.crToGreen))
        , cbToGreen(constant(coefficients.cbToGreen))
        , cbToBlue(constant(coefficients.cbToBlue)) {}

    HWY_INLINE V alpha(Int code) const { return alphaQuotient.of(hn::Sub(code, alphaOffset)); }
    HWY_INLINE V alpha(V value) const { return value; }

    HWY_INLINE V luma(Int code) const { return lumaQuotient.of(hn::Sub(code, lumaOffset)); }
    HWY_INLINE V luma(V value) const { return hn::Mul(value, constant(FloatLumaFactor)); }

    HWY_INLINE V chroma(Int code, Int offset) const {
        return chromaQuotient.of(hn::Sub(code, offset));
    }
    HWY_INLINE V chroma(V value, Int) const {
        return hn::Sub(
            hn::Div(hn::Sub(value, constant(FloatChromaOffset)), constant(FloatChromaRange)),
            constant(FloatChromaCentre));
    }

    HWY_INLINE V primary(Int code) const { return lumaQuotient.of(code); }
    HWY_INLINE V primary(V value) const { return value; }

    static constexpr int LowerBits = Wide ? 16 : 12;
    Int lumaOffset, cbOffset, crOffset, alphaOffset;
    Quotient<!Wide || isRgb<Kind>> lumaQuotient;
    Quotient<!std::is_same_v<Kind, YCbCrTimes255>> chromaQuotient;
    Quotient<true> alphaQuotient;
    V crToRed, crToGreen, cbToGreen, cbToBlue;
};

// What the chroma of a pixel, or of all that share it, adds to luma.
struct ChromaParts {
    template <class Rule, class Lane>
    HWY_INLINE ChromaParts(const Rule& decoding, Lane cbCode, Lane crCode) {
        const V cb = decoding.chroma(cbCode, decoding.cbOffset);
        const V cr = decoding.chroma(crCode, decoding.crOffset);
        red = hn::Mul(decoding.crToRed, cr);
        greenCr = hn::Mul(decoding.crToGreen, cr);
        greenCb = hn::Mul(decoding.cbToGreen, cb);
        blue = hn::Mul(decoding.cbToBlue, cb);
    }

    V red, greenCr, greenCb, blue;
};

struct Color {
    Color() = default;

    HWY_INLINE Color(V luma, const ChromaParts& chroma)
        : red(hn::Add(luma, chroma.red))
        , green(hn::Add(hn::Add(luma, chroma.greenCr), chroma.greenCb))
        , blue(hn::Add(luma, chroma.blue)) {}

    V red, green, blue;
};

template <class Kind, bool Wide, class Lane>
HWY_INLINE Color decoded(const Decoding<Kind, Wide>& decoding, Lane x, Lane y, Lane z) {
    if constexpr (isRgb<Kind>) {
        Color color;
        color.red = decoding.primary(x);
        color.green = decoding.primary(y);
        color.blue = decoding.primary(z);
        return color;
    } else {
        return Color(decoding.luma(x), ChromaParts(decoding, y, z));
    }
}

template <class D>
struct MatrixRow {
    explicit MatrixRow(const std::array<float, 3>& row)
        : ofRed(constant<D>(row[0]))
        , ofGreen(constant<D>(row[1]))
        , ofBlue(constant<D>(row[2])) {}

    using Floats = hn::Vec<D>;

    HWY_INLINE Floats of(Floats red, Floats green, Floats blue) const {
        return hn::Add(hn::Add(hn::Mul(ofRed, red), hn::Mul(ofGreen, green)),
                       hn::Mul(ofBlue, blue));
    }

    Floats ofRed, ofGreen, ofBlue;
};

// Limits are whole numbers, and what is not a number gets the lowest code.
template <class Kind, class D>
struct CodeRule {
    CodeRule(float codeRange, float codeOffset, float lowest, float highest)
        : range(constant<D>(codeRange / Factor))
        , offset(constant<D>(codeOffset / Factor))
        , roundingOffset(constant<D>(codeOffset + 0.5F))
        , low(constant<D>(lowest))
        , high(constant<D>(highest))
        , lowCode(whole(low)) {}

    using Floats = hn::Vec<D>;
    using Integers = hn::Vec<hn::RebindToSigned<D>>;

    HWY_INLINE Integers code(Floats value) const { return hn::Max(unraised(value), lowCode); }

    // A code that may still be below the lowest one.
    HWY_INLINE Integers unraised(Floats value) const {
        const Floats rounded = roundable(value);
        // On x86 the minimum of two is the second if either is not a number.
        if constexpr (HWY_ARCH_X86)
            return whole(hn::Min(high, rounded));
        else
            return whole(hn::Min(hn::IfThenElse(hn::Gt(rounded, low), rounded, low), high));
    }

    // A whole offset and the half that rounds may be added at once: where that rounds otherwise
    // than adding one after the other, the whole part of the sum is the same.
    HWY_INLINE Floats roundable(Floats value) const {
        if constexpr (Factor == 1.0F)
            return hn::Add(hn::Mul(value, range), roundingOffset);
        const Floats scaled = hn::Mul(hn::Add(hn::Mul(value, range), offset), constant<D>(Factor));
        return hn::Add(scaled, constant<D>(0.5F));
    }

    static constexpr float Factor = std::is_same_v<Kind, YCbCrTimes255> ? 255.0F : 1.0F;
    Floats range, offset, roundingOffset, low, high;
    Integers lowCode;
};

// What is stored of a pixel.
template <class Lane>
struct Stored {
    Lane x, y, z;
};

template <class Kind>
struct Encoding {
    Encoding(const CodeScale& scale, const RgbToYCbCrMatrix& matrix)
        : lumaRow(matrix.luma)
        , cbRow(matrix.cb)
        , crRow(matrix.cr)
        , lumaRule(scale.lumaRange, scale.lumaOffset, scale.lumaLow, scale.lumaHigh)
        , chromaRule(scale.chromaRange, isRgb<Kind> ? 0.0F : scale.crOffset, scale.chromaLow,
                     scale.chromaHigh)
        , alphaRule(scale.alphaRange, scale.alphaOffset, 0.0F, scale.alphaHigh) {}

    using Lane = std::conditional_t<isFloat<Kind>, V, Int>;

    HWY_INLINE Lane alpha(V value) const {
        if constexpr (isFloat<Kind>)
            return value;
        else
            return alphaRule.code(value);
    }

    HWY_INLINE Lane first(V value) const {
        if constexpr (std::is_same_v<Kind, FloatRgb>)
            return value;
        else if constexpr (isFloat<Kind>)
            return hn::Div(value, constant(FloatLumaFactor));
        else
            return lumaRule.code(value);
    }

    HWY_INLINE Lane other(V value) const {
        if constexpr (std::is_same_v<Kind, FloatRgb>)
            return value;
        else if constexpr (isFloat<Kind>)
            return hn::Add(
                hn::Mul(hn::Add(value, constant(FloatChromaCentre)), constant(FloatChromaRange)),
                constant(FloatChromaOffset));
        else
            return chromaRule.code(value);
    }

    HWY_INLINE Stored<Lane> stored(const Color& color) const {
        if constexpr (isRgb<Kind>)
            return {first(color.red), other(color.green), other(color.blue)};
        else
            return {first(component(lumaRow, color)), other(component(cbRow, color)),
                    other(component(crRow, color))};
    }

    static HWY_INLINE V component(const MatrixRow<F>& row, const Color& color) {
        return row.of(color.red, color.green, color.blue);
    }

    MatrixRow<F> lumaRow, cbRow, crRow;
    CodeRule<Kind, F> lumaRule, chromaRule;
    CodeRule<std::conditional_t<isRgb<Kind>, Rgb, YCbCr>, F> alphaRule;
};

// For pairs of pixels that share the mean of their chroma, in vectors of any size.
template <class D>
struct PairEncoding {
    PairEncoding(const CodeScale& scale, const RgbToYCbCrMatrix& matrix)
        : lumaRow(matrix.luma)
        , cbRow(matrix.cb)
        , crRow(matrix.cr)
        , lumaRule(scale.lumaRange, scale.lumaOffset, scale.lumaLow, scale.lumaHigh)
        // Halving is exact, so the mean may wait for the multiplication by the range.
        , chromaSumRule(scale.chromaRange * 0.5F, scale.crOffset, scale.chromaLow,
                        scale.chromaHigh) {}

    using Floats = hn::Vec<D>;
    using Integers = hn::Vec<hn::RebindToSigned<D>>;
    static constexpr std::size_t Pixels = hn::MaxLanes(D());

    MatrixRow<D> lumaRow, cbRow, crRow;
    CodeRule<YCbCr, D> lumaRule, chromaSumRule;
};

// The codes of as many pixels as a vector holds, in their order; those of chroma by turns Cb and
// Cr. They may still be below the lowest code.
template <class D>
struct PairCodes {
    HWY_INLINE PairCodes(const float* redPlane, const float* greenPlane, const float* bluePlane,
                         const PairEncoding<D>& encoding) {
        const auto red = hn::LoadU(D(), redPlane);
        const auto green = hn::LoadU(D(), greenPlane);
        const auto blue = hn::LoadU(D(), bluePlane);
        const auto cb = encoding.cbRow.of(red, green, blue);
        const auto cr = encoding.crRow.of(red, green, blue);
        const auto left = evenLanes(cb, cr);
        const auto right = hn::OddEven(cr, hn::DupOdd(cb));
        luma = encoding.lumaRule.unraised(encoding.lumaRow.of(red, green, blue));
        chroma = encoding.chromaSumRule.unraised(hn::Add(left, right));
    }

    // By turns those of both.
    static HWY_INLINE hn::Vec<D> evenLanes(hn::Vec<D> first, hn::Vec<D> second) {
#if HWY_TARGET <= HWY_AVX3 && HWY_ARCH_X86
        // One instruction, where the compiler finds two.
        if constexpr (sizeof(first) == 64)
            return hn::Vec<D>{_mm512_mask_moveldup_ps(first.raw, 0xAAAA, second.raw)};
#endif
        return hn::OddEven(hn::DupEven(second), first);
    }

    typename PairEncoding<D>::Integers luma, chroma;
};

// ---- Passes: `Lanes` groups at a time between memory and planes. `alpha` may be null.

struct Planes {
    float* alpha;
    float* red;
    float* green;
    float* blue;
};

struct ConstPlanes {
    const float* alpha;
    const float* red;
    const float* green;
    const float* blue;
};

HWY_INLINE void storeColor(const Color& color, const Planes& to) {
    hn::StoreU(color.red, F(), to.red);
    hn::StoreU(color.green, F(), to.green);
    hn::StoreU(color.blue, F(), to.blue);
}

HWY_INLINE Color loadColor(const ConstPlanes& from) {
    Color color;
    color.red = hn::LoadU(F(), from.red);
    color.green = hn::LoadU(F(), from.green);
    color.blue = hn::LoadU(F(), from.blue);
    return color;
}

HWY_INLINE V loadAlpha(const ConstPlanes& from) {
    return from.alpha ? hn::LoadU(F(), from.alpha) : constant(1.0F);
}

HWY_INLINE void fillAlpha(const Planes& to, std::size_t pixels) {
    if (to.alpha)
        for (std::size_t i = 0; i < pixels; i += Lanes)
            hn::StoreU(constant(1.0F), F(), to.alpha + i);
}

// Moves lanes: lane i becomes that at `from(i)`.
template <class Lane, class From>
HWY_INLINE Lane moved(Lane lanes, From from) {
    const hn::DFromV<Lane> d;
    alignas(64) std::array<std::int32_t, hn::MaxLanes(d)> places{};
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = static_cast<std::int32_t>(from(i));
    return hn::TableLookupLanes(lanes, hn::SetTableIndices(d, places.data()));
}

template <int Cb, int Y0, int Cr, int Y1, class Rule>
HWY_INLINE void decodePass(Pairs8<Cb, Y0, Cr, Y1>, const Byte* from, const Planes& to,
                           const Rule& decoding) {
    // Interleaving works in blocks of 128 bits: in this order the lower halves of all blocks, then
    // the upper halves, are neighbours in memory.
    Codes words = loadWords(from);
    if constexpr (Lanes > 4)
        words = moved(words, [](std::size_t i) { return i % 4 / 2 * 4 + i / 4 * 2 + i % 2; });
    const ChromaParts chroma(decoding, field<8 * Cb, 8>(words), field<8 * Cr, 8>(words));
    const Color left(decoding.luma(field<8 * Y0, 8>(words)), chroma);
    const Color right(decoding.luma(field<8 * Y1, 8>(words)), chroma);
    const auto store = [](V evens, V odds, float* place) HWY_ATTR {
        hn::StoreU(hn::InterleaveLower(F(), evens, odds), F(), place);
        hn::StoreU(hn::InterleaveUpper(F(), evens, odds), F(), place + Lanes);
    };
    store(left.red, right.red, to.red);
    store(left.green, right.green, to.green);
    store(left.blue, right.blue, to.blue);
    fillAlpha(to, 2 * Lanes);
}

template <int Cb, int Y0, int Cr, int Y1, class D>
HWY_INLINE void encodePass(Pairs8<Cb, Y0, Cr, Y1>, const ConstPlanes& from, Byte* to,
                           const PairEncoding<D>& encoding) {
    constexpr std::size_t Next = PairEncoding<D>::Pixels;
    constexpr std::size_t CacheLine = 64 / sizeof(float);
    for (std::size_t i = 0; i < 2 * Next; i += CacheLine) {
        askAhead(from.red + i);
        askAhead(from.green + i);
        askAhead(from.blue + i);
    }
    const PairCodes<D> first(from.red, from.green, from.blue, encoding);
    const PairCodes<D> second(from.red + Next, from.green + Next, from.blue + Next, encoding);
    // Side by side in each block of 128 bits.
    using Short = hn::Repartition<std::int16_t, D>;
    const auto narrow = [](auto left, auto right, const auto& rule) HWY_ATTR {
        const auto low =
            hn::BitCast(Short(), hn::Or(rule.lowCode, hn::ShiftLeft<16>(rule.lowCode)));
        return hn::Max(hn::ReorderDemote2To(Short(), left, right), low);
    };
    const auto luma = narrow(first.luma, second.luma, encoding.lumaRule);
    const auto chroma = narrow(first.chroma, second.chroma, encoding.chromaSumRule);
    const auto bytes =
        Cb < Y0 ? hn::Or(chroma, hn::ShiftLeft<8>(luma)) : hn::Or(luma, hn::ShiftLeft<8>(chroma));
    // The lower halves of all blocks, then the upper halves.
    constexpr std::size_t Blocks = Next / 4;
    const auto words = hn::BitCast(hn::RebindToUnsigned<D>(), bytes);
    const auto ordered =
        moved(words, [](std::size_t i) { return i / 2 % Blocks * 4 + i / 2 / Blocks * 2 + i % 2; });
    const hn::Repartition<Byte, D> memory;
    hn::StoreU(hn::BitCast(memory, ordered), memory, to);
}

// Four samples of each of `Lanes` pixels, in their order in memory.
template <class Lane>
using Samples = Several<Lane, 4>;

HWY_INLINE Samples<Int> loadSamples(const Byte* from, Byte) {
    const Codes words = loadWords(from);
    return {{field<0, 8>(words), field<8, 8>(words), field<16, 8>(words), field<24, 8>(words)}};
}

HWY_INLINE void storeSamples(const Samples<Int>& from, Byte* to, Byte) {
    storeWords(hn::Or(hn::Or(placed<0>(from.each[0]), placed<8>(from.each[1])),
                      hn::Or(placed<16>(from.each[2]), placed<24>(from.each[3]))),
               to);
}

HWY_INLINE Samples<Int> loadSamples(const Byte* from, std::uint16_t) {
    Codes low;
    Codes high;
    hn::LoadInterleaved2(Word(), reinterpret_cast<const std::uint32_t*>(from), low, high);
    return {{field<0, 16>(low), field<16, 16>(low), field<0, 16>(high), field<16, 16>(high)}};
}

HWY_INLINE void storeSamples(const Samples<Int>& from, Byte* to, std::uint16_t) {
    const Codes low = hn::Or(placed<0>(from.each[0]), placed<16>(from.each[1]));
    const Codes high = hn::Or(placed<0>(from.each[2]), placed<16>(from.each[3]));
    hn::StoreInterleaved2(low, high, Word(), reinterpret_cast<std::uint32_t*>(to));
}

HWY_INLINE Samples<V> loadSamples(const Byte* from, float) {
    Samples<V> to;
    hn::LoadInterleaved4(F(), reinterpret_cast<const float*>(from), to.each[0], to.each[1],
                         to.each[2], to.each[3]);
    return to;
}

HWY_INLINE void storeSamples(const Samples<V>& from, Byte* to, float) {
    hn::StoreInterleaved4(from.each[0], from.each[1], from.each[2], from.each[3], F(),
                          reinterpret_cast<float*>(to));
}

template <class Sample, int A, int X, int Y, int Z, class Rule>
HWY_INLINE void decodePass(Quads<Sample, A, X, Y, Z>, const Byte* from, const Planes& to,
                           const Rule& decoding) {
    const auto codes = loadSamples(from, Sample());
    storeColor(decoded(decoding, codes.each[X], codes.each[Y], codes.each[Z]), to);
    if (to.alpha)
        hn::StoreU(decoding.alpha(codes.each[A]), F(), to.alpha);
}

template <class Sample, int A, int X, int Y, int Z, class Kind>
HWY_INLINE void encodePass(Quads<Sample, A, X, Y, Z>, const ConstPlanes& from, Byte* to,
                           const Encoding<Kind>& encoding) {
    const auto stored = encoding.stored(loadColor(from));
    Samples<typename Encoding<Kind>::Lane> codes;
    codes.each[A] = encoding.alpha(loadAlpha(from));
    codes.each[X] = stored.x;
    codes.each[Y] = stored.y;
    codes.each[Z] = stored.z;
    storeSamples(codes, to, Sample());
}

template <class Sample, class Rule>
HWY_INLINE void decodePass(Triples<Sample>, const Byte* from, const Planes& to,
                           const Rule& decoding) {
    using Part = hn::Rebind<Sample, F>;
    hn::Vec<Part> x;
    hn::Vec<Part> y;
    hn::Vec<Part> z;
    hn::LoadInterleaved3(Part(), reinterpret_cast<const Sample*>(from), x, y, z);
    if constexpr (std::is_same_v<Sample, float>) {
        storeColor(decoded(decoding, x, y, z), to);
    } else {
        const auto code = [](hn::Vec<Part> samples)
                              HWY_ATTR { return hn::PromoteTo(Signed(), samples); };
        storeColor(decoded(decoding, code(x), code(y), code(z)), to);
    }
    fillAlpha(to, Lanes);
}

template <class Sample, class Kind>
HWY_INLINE void encodePass(Triples<Sample>, const ConstPlanes& from, Byte* to,
                           const Encoding<Kind>& encoding) {
    using Part = hn::Rebind<Sample, F>;
    const auto codes = encoding.stored(loadColor(from));
    auto* const samples = reinterpret_cast<Sample*>(to);
    if constexpr (std::is_same_v<Sample, float>) {
        hn::StoreInterleaved3(codes.x, codes.y, codes.z, Part(), samples);
    } else {
        const auto narrow = [](Int code) HWY_ATTR { return hn::DemoteTo(Part(), code); };
        hn::StoreInterleaved3(narrow(codes.x), narrow(codes.y), narrow(codes.z), Part(), samples);
    }
}

template <class Rule>
HWY_INLINE void decodePass(Words10, const Byte* from, const Planes& to, const Rule& decoding) {
    const Codes words = loadWords(from);
    storeColor(decoded(decoding, field<0, 10>(words), field<10, 10>(words), field<20, 10>(words)),
               to);
    if (to.alpha)
        hn::StoreU(decoding.alpha(field<30, 2>(words)), F(), to.alpha);
}

template <class Kind>
HWY_INLINE void encodePass(Words10, const ConstPlanes& from, Byte* to,
                           const Encoding<Kind>& encoding) {
    const auto codes = encoding.stored(loadColor(from));
    storeWords(hn::Or(hn::Or(placed<0>(codes.x), placed<10>(codes.y)),
                      hn::Or(placed<20>(codes.z), placed<30>(encoding.alpha(loadAlpha(from))))),
               to);
}

// Stores six vectors, one value of each in turn.
HWY_INLINE void storeSixfold(const Several<V, 6>& from, float* to) {
    using Double = hn::Repartition<double, F>;
    // A lane's six values as three pairs; then two lanes' pairs as three vectors, in each block of
    // 128 bits by itself.
    const auto storeTwoLanes = [](hn::Vec<Double> p01, hn::Vec<Double> p23, hn::Vec<Double> p45,
                                  float* place) HWY_ATTR {
        const V first = hn::BitCast(F(), hn::InterleaveLower(Double(), p01, p23));
        const V second = hn::BitCast(F(), hn::OddEven(p01, p45));
        const V third = hn::BitCast(F(), hn::InterleaveUpper(Double(), p23, p45));
        if constexpr (Lanes == 4) {
            hn::StoreU(first, F(), place);
            hn::StoreU(second, F(), place + 4);
            hn::StoreU(third, F(), place + 8);
        } else {
            const hn::Half<F> half;
            hn::StoreU(hn::LowerHalf(half, first), half, place);
            hn::StoreU(hn::LowerHalf(half, second), half, place + 4);
            hn::StoreU(hn::LowerHalf(half, third), half, place + 8);
            hn::StoreU(hn::UpperHalf(half, first), half, place + 24);
            hn::StoreU(hn::UpperHalf(half, second), half, place + 28);
            hn::StoreU(hn::UpperHalf(half, third), half, place + 32);
        }
    };
    const auto lower = [&](std::size_t i) HWY_ATTR {
        return hn::BitCast(Double(), hn::InterleaveLower(F(), from.each[i], from.each[i + 1]));
    };
    const auto upper = [&](std::size_t i) HWY_ATTR {
        return hn::BitCast(Double(), hn::InterleaveUpper(F(), from.each[i], from.each[i + 1]));
    };
    storeTwoLanes(lower(0), lower(2), lower(4), to);
    storeTwoLanes(upper(0), upper(2), upper(4), to + 12);
}

template <class Rule>
HWY_INLINE void decodePass(Packing::V210, const Byte* from, const Planes& to,
                           const Rule& decoding) {
    Codes w0;
    Codes w1;
    Codes w2;
    Codes w3;
    hn::LoadInterleaved4(Word(), reinterpret_cast<const std::uint32_t*>(from), w0, w1, w2, w3);
    const Several<ChromaParts, 3> chroma{
        {ChromaParts(decoding, field<0, 10>(w0), field<20, 10>(w0)),
         ChromaParts(decoding, field<10, 10>(w1), field<0, 10>(w2)),
         ChromaParts(decoding, field<20, 10>(w2), field<10, 10>(w3))}};
    const Several<V, 6> luma{{decoding.luma(field<10, 10>(w0)), decoding.luma(field<0, 10>(w1)),
                              decoding.luma(field<20, 10>(w1)), decoding.luma(field<10, 10>(w2)),
                              decoding.luma(field<0, 10>(w3)), decoding.luma(field<20, 10>(w3))}};
    Several<V, 6> red;
    Several<V, 6> green;
    Several<V, 6> blue;
    for (std::size_t i = 0; i < 6; ++i) {
        const Color color(luma.each[i], chroma.each[i / 2]);
        red.each[i] = color.red;
        green.each[i] = color.green;
        blue.each[i] = color.blue;
    }
    storeSixfold(red, to.red);
    storeSixfold(green, to.green);
    storeSixfold(blue, to.blue);
    fillAlpha(to, 6 * Lanes);
}

HWY_INLINE void encodePass(Packing::V210, const ConstPlanes& from, Byte* to,
                           const PairEncoding<F>& encoding) {
    alignas(64) std::array<std::int32_t, 6 * Lanes> luma;
    alignas(64) std::array<std::int32_t, 6 * Lanes> chroma; // by turns Cb and Cr
    for (std::size_t i = 0; i < luma.size(); i += Lanes) {
        const PairCodes<F> codes(from.red + i, from.green + i, from.blue + i, encoding);
        hn::Store(hn::Max(codes.luma, encoding.lumaRule.lowCode), Signed(), &luma[i]);
        hn::Store(hn::Max(codes.chroma, encoding.chromaSumRule.lowCode), Signed(), &chroma[i]);
    }
    const auto word = [](std::int32_t low, std::int32_t middle, std::int32_t high) {
        return std::uint32_t(low) | std::uint32_t(middle) << 10 | std::uint32_t(high) << 20;
    };
    for (std::size_t i = 0; i < luma.size(); i += 6, to += Packing::V210::Bytes) {
        const std::int32_t* const y = &luma[i];
        const std::int32_t* const c = &chroma[i];
        const std::array<std::uint32_t, 4> words{word(c[0], y[0], c[1]), word(y[1], c[2], y[2]),
                                                 word(c[3], y[3], c[4]), word(y[4], c[5], y[5])};
        std::memcpy(to, words.data(), sizeof words);
    }
}

// ---- Rows: whole passes on the planes themselves where pixels are neighbours, else, and for what
// is left, by way of buffers.

// Where passes begin. The second begins where the vectors of this plane, and mostly those of the
// others, cross no cache line, and the last ends with the row: some pixels are done twice.
template <std::size_t GroupPixels, std::size_t PassPixels>
struct Passes {
    HWY_INLINE Passes(const float* plane, std::size_t rowPixels)
        : pixels(rowPixels) {
        constexpr std::size_t Line = 64 / sizeof(float);
        const std::size_t misfit = reinterpret_cast<std::uintptr_t>(plane) / sizeof(float) % Line;
        afterFirst = (Line - misfit) % Line;
        while (afterFirst == 0 || (afterFirst < PassPixels && afterFirst % GroupPixels != 0))
            afterFirst += Line;
        afterFirst = std::min(afterFirst, PassPixels);
    }

    HWY_INLINE bool next() {
        const bool isFirst = done == 0;
        if (pixels - done >= PassPixels)
            at = done;
        else if (!isFirst && done < pixels && pixels % GroupPixels == 0)
            at = pixels - PassPixels;
        else
            return false;
        done = isFirst ? afterFirst : at + PassPixels;
        return true;
    }

    std::size_t pixels, afterFirst;
    std::size_t at = 0;
    std::size_t done = 0;
};

template <class Pack, class Kind>
struct EncodingOf {
    using Type = Encoding<Kind>;
    static constexpr std::size_t PassGroups = Lanes;
};
template <int Cb, int Y0, int Cr, int Y1>
struct EncodingOf<Pairs8<Cb, Y0, Cr, Y1>, YCbCr> {
    using Type = PairEncoding<PairFloats>;
    static constexpr std::size_t PassGroups = Type::Pixels;
};
template <>
struct EncodingOf<Packing::V210, YCbCr> {
    using Type = PairEncoding<F>;
    static constexpr std::size_t PassGroups = Lanes;
};

template <class Pack, class Kind>
struct VectorRow {
    using Group = Pack;

    static std::size_t bytesOf(std::size_t pixels) {
        return (pixels + Group::Pixels - 1) / Group::Pixels * Group::Bytes;
    }

    static void decode(const void* source, const PlanarRow& row, std::size_t pixels,
                       const CodeScale& scale, const YCbCrToRgbCoefficients& coefficients) {
        constexpr std::size_t PassPixels = Lanes * Group::Pixels;
        constexpr std::size_t PassBytes = Lanes * Group::Bytes;
        using Plane = std::array<float, PassPixels>;
        const PlanarRow to = row; // a copy that stores of floats cannot change
        const Decoding<Kind, (Group::CodeBits > 10)> decoding(scale, coefficients);
        const auto* from = static_cast<const Byte*>(source);
        std::size_t done = 0;
        if (to.step == 1) {
            Passes<Group::Pixels, PassPixels> passes(to.red, pixels);
            while (passes.next())
                decodePass(Group(), from + bytesOf(passes.at),
                           Planes{to.alpha ? to.alpha + passes.at : nullptr, to.red + passes.at,
                                  to.green + passes.at, to.blue + passes.at},
                           decoding);
            done = passes.done;
        }
        if (done == pixels)
            return;
        from += bytesOf(done);
        alignas(64) std::array<Byte, PassBytes> packed{};
        alignas(64) std::array<Plane, 4> planes;
        const Planes buffer{to.alpha ? planes[0].data() : nullptr, planes[1].data(),
                            planes[2].data(), planes[3].data()};
        for (; done < pixels; done += PassPixels, from += PassBytes) {
            const std::size_t count = std::min(PassPixels, pixels - done);
            std::memcpy(packed.data(), from, bytesOf(count));
            decodePass(Group(), packed.data(), buffer, decoding);
            const auto copy = [&](const Plane& plane, float* start) {
                float* place = start + std::ptrdiff_t(done) * to.step;
                for (std::size_t i = 0; i < count; ++i, place += to.step)
                    *place = plane[i];
            };
            copy(planes[1], to.red);
            copy(planes[2], to.green);
            copy(planes[3], to.blue);
            if (to.alpha)
                copy(planes[0], to.alpha);
        }
    }

    static void encode(const ConstPlanarRow& row, std::size_t pixels, void* destination,
                       const CodeScale& scale, const RgbToYCbCrMatrix& matrix) {
        using Chosen = EncodingOf<Group, Kind>;
        constexpr std::size_t PassPixels = Chosen::PassGroups * Group::Pixels;
        constexpr std::size_t PassBytes = Chosen::PassGroups * Group::Bytes;
        using Plane = std::array<float, PassPixels>;
        const ConstPlanarRow from = row; // a copy that stores of bytes cannot change
        const typename Chosen::Type encoding(scale, matrix);
        auto* to = static_cast<Byte*>(destination);
        std::size_t done = 0;
        if (from.step == 1) {
            Passes<Group::Pixels, PassPixels> passes(from.red, pixels);
            while (passes.next())
                encodePass(Group(),
                           ConstPlanes{from.alpha ? from.alpha + passes.at : nullptr,
                                       from.red + passes.at, from.green + passes.at,
                                       from.blue + passes.at},
                           to + bytesOf(passes.at), encoding);
            done = passes.done;
        }
        if (done == pixels)
            return;
        to += bytesOf(done);
        alignas(64) std::array<Byte, PassBytes> packed;
        alignas(64) std::array<Plane, 4> planes{};
        const ConstPlanes buffer{from.alpha ? planes[0].data() : nullptr, planes[1].data(),
                                 planes[2].data(), planes[3].data()};
        for (; done < pixels; done += PassPixels, to += PassBytes) {
            const std::size_t count = std::min(PassPixels, pixels - done);
            // The last pixel is repeated, as a partner for itself.
            const auto copy = [&](const float* start, Plane& plane) {
                const float* place = start + std::ptrdiff_t(done) * from.step;
                for (std::size_t i = 0; i < count; ++i, place += from.step)
                    plane[i] = *place;
                if (count < PassPixels)
                    plane[count] = plane[count - 1];
            };
            copy(from.red, planes[1]);
            copy(from.green, planes[2]);
            copy(from.blue, planes[3]);
            if (from.alpha)
                copy(from.alpha, planes[0]);
            encodePass(Group(), buffer, packed.data(), encoding);
            std::memcpy(to, packed.data(), bytesOf(count));
        }
    }
};

const RowKernels& rowKernels() {
    static const RowKernels kernels = makeRowKernels<VectorRow>(hwy::TargetName(HWY_TARGET));
    return kernels;
}

#endif

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kestrel::UI {

HWY_EXPORT(rowKernels);

const RowKernels& rowKernels() noexcept {
    return HWY_DYNAMIC_DISPATCH(rowKernels)();
}

} // namespace Kestrel::UI
#endif
