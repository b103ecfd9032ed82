#pragma once

#include <KxUI/color/HalfFloat_p.h>
#include <KxUI/color/RowKernels_p.h>

#include <cstdint>

// The layouts as types: how components lie in memory, and what they are. Scalar and vector kernels
// are both made from this one list.

namespace Kestrel::UI::Packing {

// Four bytes for two pixels that share Cb and Cr; the numbers are places in memory.
template <int Cb, int Y0, int Cr, int Y1>
struct Pairs8 {
    static constexpr std::size_t Pixels = 2;
    static constexpr std::size_t Bytes = 4;
    static constexpr int CodeBits = 8;
};

// Four samples a pixel. X, Y, Z are luma, Cb, Cr or red, green, blue; the numbers are places in
// memory.
template <class SampleType, int AlphaPlace, int XPlace, int YPlace, int ZPlace>
struct Quads {
    using Sample = SampleType;
    static constexpr std::size_t Pixels = 1;
    static constexpr std::size_t Bytes = 4 * sizeof(Sample);
    static constexpr int CodeBits = 8 * sizeof(Sample);
    static constexpr int Alpha = AlphaPlace;
    static constexpr int X = XPlace;
    static constexpr int Y = YPlace;
    static constexpr int Z = ZPlace;
};

// Red, green and blue.
template <class SampleType>
struct Triples {
    using Sample = SampleType;
    static constexpr std::size_t Pixels = 1;
    static constexpr std::size_t Bytes = 3 * sizeof(Sample);
    static constexpr int CodeBits = 8 * sizeof(Sample);
};

// Three times ten bits and two, red lowest.
struct Words10 {
    static constexpr std::size_t Pixels = 1;
    static constexpr std::size_t Bytes = 4;
    static constexpr int CodeBits = 10;
};

struct V210 {
    static constexpr std::size_t Pixels = 6;
    static constexpr std::size_t Bytes = 16;
    static constexpr int CodeBits = 10;
};

} // namespace Kestrel::UI::Packing

namespace Kestrel::UI::Components {

struct YCbCr {};
struct YCbCrTimes255 {}; // encoding makes codes of a 255th, then multiplies them; alpha's excepted
struct FloatYCbCr {};
struct Rgb {};
struct FloatRgb {};

// The float layout's studio range, for luma and chroma of 0-1.
constexpr float FloatLumaFactor = 1.1643835F;
constexpr float FloatChromaOffset = 0.0627451F;
constexpr float FloatChromaRange = 0.8784314F;
constexpr float FloatChromaCentre = 0.502F;

template <class Kind>
constexpr bool isRgb = false;
template <>
inline constexpr bool isRgb<Rgb> = true;
template <>
inline constexpr bool isRgb<FloatRgb> = true;

template <class Kind>
constexpr bool isFloat = false;
template <>
inline constexpr bool isFloat<FloatYCbCr> = true;
template <>
inline constexpr bool isFloat<FloatRgb> = true;

} // namespace Kestrel::UI::Components

namespace Kestrel::UI {

// `Row<Packing, Components>` has the two kernels of a layout as static functions, and the packing
// as its type `Group`.
template <template <class, class> class Row>
RowKernels makeRowKernels(const char* name) {
    using namespace Packing;
    using namespace Components;
    using Byte = std::uint8_t;
    using Short = std::uint16_t;

    RowKernels kernels{};
    kernels.name = name;
    const auto add = [&kernels](PixelLayout layout, auto row) {
        using Layout = decltype(row);
        const auto index = std::size_t(layout);
        kernels.group[index] = {Layout::Group::Pixels, Layout::Group::Bytes};
        kernels.decode[index] = &Layout::decode;
        kernels.encode[index] = &Layout::encode;
    };
    add(PixelLayout::CbYCrY8, Row<Pairs8<0, 1, 2, 3>, YCbCr>());
    add(PixelLayout::CbYCrY8LegacyMpeg, Row<Pairs8<0, 1, 2, 3>, YCbCr>());
    add(PixelLayout::YCbYCr8Legacy, Row<Pairs8<1, 0, 3, 2>, YCbCr>());
    add(PixelLayout::AYCbCr8, Row<Quads<Byte, 0, 1, 2, 3>, YCbCr>());
    add(PixelLayout::CbYCrA8, Row<Quads<Byte, 3, 1, 0, 2>, YCbCr>());
    add(PixelLayout::V210, Row<Packing::V210, YCbCr>());
    add(PixelLayout::AYCbCr16, Row<Quads<Short, 0, 1, 2, 3>, YCbCr>());
    add(PixelLayout::AYCbCr16From8, Row<Quads<Short, 0, 1, 2, 3>, YCbCrTimes255>());
    add(PixelLayout::AYCbCrFloat, Row<Quads<float, 0, 1, 2, 3>, FloatYCbCr>());
    add(PixelLayout::RGB8, Row<Triples<Byte>, Rgb>());
    add(PixelLayout::RGBA8, Row<Quads<Byte, 3, 0, 1, 2>, Rgb>());
    add(PixelLayout::BGRA8, Row<Quads<Byte, 3, 2, 1, 0>, Rgb>());
    add(PixelLayout::RGB10A2, Row<Words10, Rgb>());
    add(PixelLayout::RGB16, Row<Triples<Short>, Rgb>());
    add(PixelLayout::RGBA16, Row<Quads<Short, 3, 0, 1, 2>, Rgb>());
    add(PixelLayout::RGBFloat, Row<Triples<float>, FloatRgb>());
    add(PixelLayout::RGBAFloat, Row<Quads<float, 3, 0, 1, 2>, FloatRgb>());
    add(PixelLayout::RGBHalf, Row<Triples<Half>, FloatRgb>());
    add(PixelLayout::RGBAHalf, Row<Quads<Half, 3, 0, 1, 2>, FloatRgb>());
    return kernels;
}

} // namespace Kestrel::UI
