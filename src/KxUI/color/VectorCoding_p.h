// Codes to values and back, as in the scalar kernels, on vectors.
// Without a guard: VectorRowKernels.cpp includes it once for each kind of processor.

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

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

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();
