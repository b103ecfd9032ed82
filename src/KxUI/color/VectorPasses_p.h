// Passes: `Lanes` groups at a time between memory and planes. `alpha` may be null.
// Without a guard: VectorRowKernels.cpp includes it once for each kind of processor.

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

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

HWY_INLINE Samples<V> loadSamples(const Byte* from, Half) {
    Several<Halves, 4> stored;
    hn::LoadInterleaved4(HalfLanes(), reinterpret_cast<const std::uint16_t*>(from), stored.each[0],
                         stored.each[1], stored.each[2], stored.each[3]);
    return {{floats(stored.each[0]), floats(stored.each[1]), floats(stored.each[2]),
             floats(stored.each[3])}};
}

HWY_INLINE void storeSamples(const Samples<V>& from, Byte* to, Half) {
    hn::StoreInterleaved4(halves(from.each[0]), halves(from.each[1]), halves(from.each[2]),
                          halves(from.each[3]), HalfLanes(), reinterpret_cast<std::uint16_t*>(to));
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

// What the vectors of three samples are loaded as.
template <class Sample>
using StoredSample = std::conditional_t<std::is_same_v<Sample, Half>, std::uint16_t, Sample>;

template <class Sample, class Rule>
HWY_INLINE void decodePass(Triples<Sample>, const Byte* from, const Planes& to,
                           const Rule& decoding) {
    using Stored = StoredSample<Sample>;
    using Part = hn::Rebind<Stored, F>;
    hn::Vec<Part> x;
    hn::Vec<Part> y;
    hn::Vec<Part> z;
    hn::LoadInterleaved3(Part(), reinterpret_cast<const Stored*>(from), x, y, z);
    if constexpr (std::is_same_v<Sample, float>) {
        storeColor(decoded(decoding, x, y, z), to);
    } else if constexpr (std::is_same_v<Sample, Half>) {
        storeColor(decoded(decoding, floats(x), floats(y), floats(z)), to);
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
    using Stored = StoredSample<Sample>;
    using Part = hn::Rebind<Stored, F>;
    const auto codes = encoding.stored(loadColor(from));
    auto* const samples = reinterpret_cast<Stored*>(to);
    if constexpr (std::is_same_v<Sample, float>) {
        hn::StoreInterleaved3(codes.x, codes.y, codes.z, Part(), samples);
    } else if constexpr (std::is_same_v<Sample, Half>) {
        hn::StoreInterleaved3(halves(codes.x), halves(codes.y), halves(codes.z), Part(), samples);
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

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();
