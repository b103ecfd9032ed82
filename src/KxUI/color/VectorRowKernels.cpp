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

#if HWY_TARGET != HWY_EMU128 && HWY_TARGET != HWY_SCALAR
// Each stands on those before it.
#include <KxUI/color/VectorLanes_p.h>

#include <KxUI/color/VectorCoding_p.h>

#include <KxUI/color/VectorPasses_p.h>
#endif

HWY_BEFORE_NAMESPACE();

namespace Kestrel::UI {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR

const RowKernels& rowKernels() {
    return scalarRowKernels();
}

#else

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
