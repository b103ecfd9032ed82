#pragma once

#include <KxUI/color/ColorConversions.h>

#include <array>
#include <cstddef>

namespace Kestrel::UI {

// What the codes of a layout stand for: value = (code - offset) / range. For RGB layouts the luma
// range is that of all three colours.
struct CodeScale {
    float lumaOffset;
    float lumaRange;
    float cbOffset; // for decoding; encoding centres both on crOffset
    float crOffset;
    float chromaRange;
    float alphaOffset;
    float alphaRange;

    // What encoding limits codes to.
    float lumaLow;
    float lumaHigh;
    float chromaLow;
    float chromaHigh;
    float alphaHigh;
};

const CodeScale& codeScale(PixelLayout layout) noexcept;

// One row each, `pixels` > 0, whole groups for V210.
using DecodeKernel = void (*)(const void* source, const PlanarRow& to, std::size_t pixels,
                              const CodeScale& scale, const YCbCrToRgbCoefficients& coefficients);
using EncodeKernel = void (*)(const ConstPlanarRow& from, std::size_t pixels, void* destination,
                              const CodeScale& scale, const RgbToYCbCrMatrix& matrix);

// A way of computing all rows, indexed by layout. All ways give the same bits.
struct RowKernels {
    // The pixels that cannot be told apart in memory, and their bytes.
    struct Group {
        std::size_t pixels;
        std::size_t bytes;
    };

    const char* name;
    std::array<Group, PixelLayoutCount> group;
    std::array<DecodeKernel, PixelLayoutCount> decode;
    std::array<EncodeKernel, PixelLayoutCount> encode;
};

// Pixel by pixel: what runs on any processor, and the reference for all others.
const RowKernels& scalarRowKernels() noexcept;

// The fastest that this processor runs.
const RowKernels& rowKernels() noexcept;

} // namespace Kestrel::UI
