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

} // namespace HWY_NAMESPACE
} // namespace Kestrel::UI

HWY_AFTER_NAMESPACE();
