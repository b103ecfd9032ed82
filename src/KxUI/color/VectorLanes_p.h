// Vectors of floats, integers and words, and what the rows do with them.
// Without a guard: VectorRowKernels.cpp includes it once for each kind of processor.

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

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

// ---- Half floats, as in HalfFloat_p.h.

using HalfLanes = hn::Rebind<std::uint16_t, F>;
using Halves = hn::Vec<HalfLanes>;

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX2

HWY_INLINE V floats(Halves halves) {
    return V{_mm256_cvtph_ps(halves.raw)};
}

HWY_INLINE Halves halves(V floats) {
    return Halves{_mm256_cvtps_ph(floats.raw, _MM_FROUND_TO_NEAREST_INT)};
}

#else

HWY_INLINE Codes word(std::uint32_t bits) {
    return hn::Set(Word(), bits);
}

HWY_INLINE V floats(Halves halves) {
    using namespace HalfBits;
    const Codes all = hn::PromoteTo(Word(), halves);
    const Codes sign = hn::ShiftLeft<16>(hn::And(all, word(Sign)));
    const Codes magnitude = hn::And(all, word(Magnitude));
    const Codes shifted = hn::ShiftLeft<FractionShift>(magnitude);
    const Codes normal = hn::Add(shifted, word(Rebias));
    const Codes special =
        hn::Or(hn::Add(normal, word(Rebias)),
               hn::IfThenElseZero(hn::Gt(magnitude, word(Infinity)), word(FloatQuiet)));
    const Codes subnormal =
        hn::BitCast(Word(), hn::Sub(hn::BitCast(F(), hn::Add(shifted, word(SmallestNormal))),
                                    hn::BitCast(F(), word(SmallestNormal))));
    const Codes finite = hn::IfThenElse(hn::Gt(magnitude, word(Payload)), normal, subnormal);
    return hn::BitCast(
        F(), hn::Or(sign, hn::IfThenElse(hn::Gt(word(Infinity), magnitude), finite, special)));
}

HWY_INLINE Halves halves(V floats) {
    using namespace HalfBits;
    const Codes all = hn::BitCast(Word(), floats);
    const Codes sign = hn::And(hn::ShiftRight<16>(all), word(Sign));
    const Codes bits = hn::And(all, word(FloatMagnitude));
    const Codes shifted = hn::ShiftRight<FractionShift>(bits);
    const Codes special = hn::Or(
        word(Infinity), hn::IfThenElseZero(hn::Gt(bits, word(FloatInfinity)),
                                           hn::Or(word(Quiet), hn::And(shifted, word(Payload)))));
    const V sum = hn::Add(hn::BitCast(F(), bits), hn::BitCast(F(), word(SubnormalMagic)));
    const Codes subnormal = hn::Sub(hn::BitCast(Word(), sum), word(SubnormalMagic));
    const Codes normal = hn::ShiftRight<FractionShift>(
        hn::Add(hn::Sub(bits, word(Rebias - 0xFFFU)), hn::And(shifted, word(1))));
    const Codes finite = hn::IfThenElse(hn::Gt(word(SmallestNormal), bits), subnormal, normal);
    const Codes magnitude = hn::IfThenElse(hn::Gt(word(TooLarge), bits), finite, special);
    // Sixteen bits fit the signed integers that can be narrowed.
    return hn::DemoteTo(HalfLanes(), hn::BitCast(Signed(), hn::Or(sign, magnitude)));
}

#endif

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();
