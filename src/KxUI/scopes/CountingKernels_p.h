#pragma once

#include <KxUI/color/ColorConversions.h>
#include <KxUI/scopes/ScopeVectors.h>
#include <KxUI/scopes/ValueRange.h>

#include <cstddef>
#include <cstdint>

/** \file
    What is computed for the pixels of a piece of a row before they are counted. All ways of computing
    it give the same bits. Planes have room for whole vectors: `CountingLanes` floats more than there
    are pixels, which are read and written, but mean nothing. */
namespace Kestrel::UI {

/** The widest vector, in floats. */
constexpr std::size_t CountingLanes = 16;

/** Red, green and blue of some pixels. */
struct ColorPlanes {
    const float* red;
    const float* green;
    const float* blue;
};

/** Luma and chroma of the same pixels; of the chroma both or none. */
struct YCbCrPlanes {
    float* luma;
    float* cb;
    float* cr;
};

/** Pixels outside the ranges of signals. */
struct LegalCounts {
    std::uint64_t illegal = 0;        ///< not within 0 to 1
    std::uint64_t outsideEbuR103 = 0; ///< not within -44/876 to 920/876
};

constexpr float EbuR103Lower = -44.0F / 876;
constexpr float EbuR103Upper = 920.0F / 876;

/** What has no cell in the plane of chroma follows the cells, in this order. */
struct VectorSlots {
    explicit VectorSlots(int size) noexcept
        : cells(std::uint32_t(size) * std::uint32_t(size)) {}
    std::uint32_t cells;

    std::uint32_t outside() const noexcept { return cells; }
    std::uint32_t notANumber() const noexcept { return cells + 1; }
    std::uint32_t gated() const noexcept { return cells + 2; }
    std::uint32_t count() const noexcept { return cells + 3; }
};

/** In the cube the cells are there twice, for pixels inside and for those next to the surface. */
struct SolidSlots {
    explicit SolidSlots(int edge) noexcept
        : cells(std::uint32_t(edge) * std::uint32_t(edge) * std::uint32_t(edge)) {}
    std::uint32_t cells;

    std::uint32_t outside() const noexcept { return cells; }
    std::uint32_t notANumber() const noexcept { return 2 * cells; }
    std::uint32_t count() const noexcept { return 2 * cells + 1; }
};

/** A way of computing all of it. Ranges are normalized. */
struct CountingKernels {
    const char* name;
    /** The bits of the nearest half float; all that is no number gets one code, without a sign. */
    void (*halfCodes)(const float* values, std::size_t pixels, std::uint16_t* codes);
    /** The nearest code of `range` to 1; values are 0-1. */
    void (*unitCodes)(const float* values, std::size_t pixels, float range, std::uint16_t* codes);
    /** ValueRange::binOf, behind the place where the bins of a pixel begin. */
    void (*bins)(const float* values, std::size_t pixels, const ValueRange& range,
                 const std::uint16_t* places, std::uint16_t* bins);
    /** (r a + g b) + b c for each row of the matrix that has a plane. */
    void (*yCbCr)(const ColorPlanes& from, std::size_t pixels, const RgbToYCbCrMatrix& matrix,
                  const YCbCrPlanes& to);
    /** The largest of three; not a number if one of them is none. */
    void (*largest)(const ColorPlanes& from, std::size_t pixels, float* to);
    /** The cell of each pixel or one of VectorSlots. */
    void (*vectorCells)(const ColorPlanes& colors, const YCbCrPlanes& from, std::size_t pixels,
                        const VectorRange& range, std::uint32_t* cells);
    /** The cell of each pixel or one of SolidSlots. */
    void (*solidCells)(const ColorPlanes& from, std::size_t pixels, const ValueRange& range,
                       std::uint32_t* cells);
    /** Adds to `counts`. */
    void (*legal)(const ColorPlanes& colors, const float* luma, std::size_t pixels,
                  LegalCounts& counts);
    /** Adds each of `count` counters to its sum; no memory beyond them is touched. */
    void (*addCounters)(const std::uint16_t* counters, std::size_t count, std::uint32_t* sums);
};

/** Pixel by pixel: what runs on any processor, and the reference for all others. */
const CountingKernels& scalarCountingKernels() noexcept;

/** The fastest that this processor runs. */
const CountingKernels& countingKernels() noexcept;

} // namespace Kestrel::UI
