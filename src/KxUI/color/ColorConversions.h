#pragma once

#include <KxUI/Export.h>

#include <array>
#include <cstddef>

/** \file
    Colour spaces, conversions of single colours, and the rows of packed pixels that video frames
    are made of. All arithmetic is in single precision. Every function is free of state and may be
    called from any thread. */

namespace Kestrel::UI {

/** The YCbCr options offered to users, in the order of every combo box. Functions that take an
    index treat any other number as `Rec709`. */
namespace ColorSpace {

/** The options; the numbers are part of saved scripts. */
enum Index : int {
    Rec709,         ///< ITU-R BT.709, for high definition
    Rec601,         ///< ITU-R BT.601, for standard definition
    NovaLegacy,     ///< the host's former matrix for 8-bit video
    NovaLegacyMpeg, ///< the host's former matrix for MPEG movies
    NovaLegacyYuvs  ///< the host's former matrix for uncompressed 4:2:2 movies
};

/** How many options there are. */
constexpr int Count = 5;

} // namespace ColorSpace

/** The text of an option as users see it, never null; it lives as long as the process. */
KXUI_EXPORT const char* colorSpaceName(int index) noexcept;

/** R = Y + crToRed Cr; G = Y + crToGreen Cr + cbToGreen Cb; B = Y + cbToBlue Cb, where Y is
    nominally 0-1, Cb and Cr are nominally -0.5 to 0.5. A plain value; its layout is frozen. */
struct YCbCrToRgbCoefficients {
    float crToRed;   ///< what Cr adds to red
    float crToGreen; ///< what Cr adds to green, negative
    float cbToGreen; ///< what Cb adds to green, negative
    float cbToBlue;  ///< what Cb adds to blue
};

/** Rows Y, Cb and Cr of the matrix for a column (R, G, B), all nominally 0-1. A plain value; its
    layout is frozen. */
struct RgbToYCbCrMatrix {
    std::array<float, 3> luma; ///< weights of red, green and blue in Y
    std::array<float, 3> cb;   ///< weights in Cb, which add up to 0
    std::array<float, 3> cr;   ///< weights in Cr, which add up to 0
};

/** The coefficients of an option, for decoding and for encoding. They live as long as the
    process. */
KXUI_EXPORT const YCbCrToRgbCoefficients& colorSpaceYCbCrToRgb(int index) noexcept;
KXUI_EXPORT const RgbToYCbCrMatrix& colorSpaceRgbToYCbCr(int index) noexcept;

/** The matrix and the coefficients of any luma weights of red and blue, as the ITU-R
    recommendations define them: Y = kr R + (1 - kr - kb) G + kb B, Cb = (B - Y) / (2 (1 - kb)), Cr =
    (R - Y) / (2 (1 - kr)). BT.2020 has 0.2627 and 0.0593. Both weights are above 0, and their sum is
    below 1; others give those of BT.709. The five options above stay as they are, to their last
    digit, also where these functions would round otherwise. */
KXUI_EXPORT RgbToYCbCrMatrix rgbToYCbCrMatrix(double kr, double kb) noexcept;
KXUI_EXPORT YCbCrToRgbCoefficients yCbCrToRgbCoefficients(double kr, double kb) noexcept;

/** ITU-R BT.601 with studio range: luma 16/255 to 235/255, chroma centred on 0. */
KXUI_EXPORT void rgbToStudioYCbCr(float red, float green, float blue, float& luma, float& cb,
                                  float& cr) noexcept;

/** ITU-R BT.601 with full range, chroma centred on 0. */
KXUI_EXPORT void rgbToFullYCbCr(float red, float green, float blue, float& luma, float& cb,
                                float& cr) noexcept;

/** NTSC's YIQ. */
KXUI_EXPORT void yiqToRgb(float y, float i, float q, float& red, float& green,
                          float& blue) noexcept;

/** The hexcone model of Smith (1978). Hue is 0 up to but without 1, from red over green to blue;
    saturation is 0-1 for colours without negative components; value is the largest component.
    Greys, and colours without a positive component, have hue and saturation 0. */
KXUI_EXPORT void rgbToHsv(float red, float green, float blue, float& hue, float& saturation,
                          float& value) noexcept;

/** Undoes `rgbToHsv`. The hue wraps around; one that is not finite counts as 0. */
KXUI_EXPORT void hsvToRgb(float hue, float saturation, float value, float& red, float& green,
                          float& blue) noexcept;

/** How the pixels of a row are packed: components in their order in memory, then the bits of each.
    16-bit samples and 32-bit words are in the machine's byte order, except V210, which is always
    little-endian. Two pixels of a 4:2:2 layout (CbYCrY, YCbYCr, V210) share Cb and Cr. */
enum class PixelLayout : int {
    /** 8-bit 4:2:2, studio range; usual option `NovaLegacy`. */
    CbYCrY8,
    /** 8-bit 4:2:2, luma over 218 codes and chroma over 255; usual option `NovaLegacyMpeg`. */
    CbYCrY8LegacyMpeg,
    /** 8-bit 4:2:2, luma over 218 codes and chroma over 255. Decoding centres Cb on 127 and Cr on
        128; encoding centres both on 128. Usual option `NovaLegacy`. */
    YCbYCr8Legacy,
    /** 8-bit 4:4:4, luma 0-219 without the offset of 16, chroma of studio range; usual option
        `NovaLegacy`. */
    AYCbCr8,
    /** 8-bit 4:4:4, studio range; alpha is scaled as luma is. */
    CbYCrA8,
    /** 10-bit 4:2:2, studio range: six pixels in four words of three samples, lowest bits first.
        Rows end at the last whole group of six. */
    V210,
    /** 16-bit 4:4:4, studio range. */
    AYCbCr16,
    /** As `AYCbCr16`, but encoding stores 8-bit studio codes times 255 (not 257). */
    AYCbCr16From8,
    /** Float 4:4:4. Luma is scaled from studio range without its offset being removed, chroma is
        scaled and centred. Usual option `NovaLegacy`. */
    AYCbCrFloat,

    RGB8,  ///< codes 0-255 stand for 0-1; likewise, by their bits, below
    RGBA8, ///< 8-bit
    BGRA8, ///< 8-bit
    /** A 32-bit word with red in its lowest ten bits and alpha in its highest two. */
    RGB10A2,
    RGB16,     ///< 16-bit
    RGBA16,    ///< 16-bit
    RGBFloat,  ///< 32-bit floats, copied as they are
    RGBAFloat, ///< 32-bit floats, copied as they are
    /** Half floats (IEEE 754 binary16). Decoding is exact; encoding takes the nearest half, of two the
        even one, and infinity from 65520 on. What is not a number stays so. */
    RGBHalf,
    RGBAHalf, ///< as `RGBHalf`
};

/** How many layouts there are. */
constexpr int PixelLayoutCount = 19;

/** The bytes that `pixels` pixels take: whole groups of two or six pixels where samples are
    shared. */
KXUI_EXPORT std::size_t rowBytes(PixelLayout layout, int pixels) noexcept;

/** The option that frames of a layout are usually stored with; `Rec709` where each frame says for
    itself, and for RGB layouts. */
KXUI_EXPORT int rowColorSpace(PixelLayout layout) noexcept;

/** A row of float pixels, one pointer to the first sample of each component. The memory is the
    caller's. A plain value; its layout is frozen. */
struct PlanarRow {
    float* alpha = nullptr; ///< may stay null where alpha is not wanted
    float* red = nullptr;   ///< not null
    float* green = nullptr; ///< not null
    float* blue = nullptr;  ///< not null
    /** Floats from one pixel to the next: 1 for planes, 4 for interleaved RGBA. */
    std::ptrdiff_t step = 1;
};

/** A `PlanarRow` to read from. A plain value; its layout is frozen. */
struct ConstPlanarRow {
    /** No memory yet. */
    ConstPlanarRow() = default;

    /** The members in their order. */
    ConstPlanarRow(const float* a, const float* r, const float* g, const float* b,
                   std::ptrdiff_t floats = 1) noexcept
        : alpha(a)
        , red(r)
        , green(g)
        , blue(b)
        , step(floats) {}
    /** The same memory, to be read. */
    ConstPlanarRow(const PlanarRow& row) noexcept
        : ConstPlanarRow(row.alpha, row.red, row.green, row.blue, row.step) {}

    const float* alpha = nullptr; ///< null: alpha is 1
    const float* red = nullptr;   ///< not null
    const float* green = nullptr; ///< not null
    const float* blue = nullptr;  ///< not null
    std::ptrdiff_t step = 1;      ///< floats from one pixel to the next
};

/** Unpacks the first `pixels` pixels at `source` (any alignment, `rowBytes` of them are read).
    Alpha is 1 for layouts without it, and is not written to a null `to.alpha`. RGB layouts ignore
    the coefficients. `source` and `to` do not overlap; nothing is done where `source` or a colour
    of `to` is null. The bits of the result do not depend on the processor. */
KXUI_EXPORT void decodeRow(PixelLayout layout, const void* source, const PlanarRow& to, int pixels,
                           const YCbCrToRgbCoefficients& coefficients) noexcept;

/** Decodes with the coefficients of `rowColorSpace`. */
KXUI_EXPORT void decodeRow(PixelLayout layout, const void* source, const PlanarRow& to,
                           int pixels) noexcept;

/** Packs `pixels` pixels into the `rowBytes` at `destination` (any alignment). A null `from.alpha`
    stands for 1. Codes are rounded and limited to what the layout holds (8-bit studio luma to
    1-254, 10-bit to 4-1019); what is not a number gets the lowest. Two pixels that share chroma get
    the mean of theirs; a last one without a partner stands for both. RGB layouts ignore the matrix.
    `from` and `destination` do not overlap; nothing is done where a colour of `from` or
    `destination` is null. The bits of the result do not depend on the processor. */
KXUI_EXPORT void encodeRow(PixelLayout layout, const ConstPlanarRow& from, int pixels,
                           void* destination, const RgbToYCbCrMatrix& matrix) noexcept;

/** Encodes with the matrix of `rowColorSpace`. */
KXUI_EXPORT void encodeRow(PixelLayout layout, const ConstPlanarRow& from, int pixels,
                           void* destination) noexcept;

} // namespace Kestrel::UI
