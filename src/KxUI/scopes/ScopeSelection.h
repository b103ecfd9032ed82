#pragma once

#include <KxUI/Export.h>
#include <KxUI/scopes/ScopeEncoding.h>
#include <KxUI/scopes/ScopeImage.h>
#include <KxUI/scopes/ValueRange.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace Kestrel::UI {

/** Pixels chosen in a scope by their values. A value. Any thread. */
struct KXUI_EXPORT ScopeSelection {
    /** How it is chosen. */
    enum class Kind {
        Nothing,    ///< no pixel
        Everything, ///< all pixels
        Values,     ///< `channel` lies in `lower` to `upper`, both included
        NotANumber, ///< `channel` is not a number
        Chroma,     ///< Cb and Cr lie inside `polygon`
        Cells       ///< the cell of the solid's grid is among `cells`
    };
    /** What Values looks at; the numbers are part of saved states. */
    enum Channel {
        Red,        ///< the signal's red
        Green,      ///< its green
        Blue,       ///< its blue
        Luma,       ///< by the matrix of the encoding
        Cb,         ///< likewise
        Cr,         ///< likewise
        Largest,    ///< the largest of red, green and blue
        Any,        ///< one of red, green and blue
        Saturation, ///< by rgbToHsv()
        Hue         ///< likewise, 0 to 1; greys have none
    };
    /** A place in the plane of chroma. */
    struct Point {
        float cb; ///< to the right
        float cr; ///< upwards

        /** Whether they are the same. */
        friend bool operator==(const Point& a, const Point& b) noexcept {
            return a.cb == b.cb && a.cr == b.cr;
        }
    };

    Kind kind = Kind::Nothing;        ///< how
    Channel channel = Luma;           ///< of Values and NotANumber
    float lower = 0;                  ///< of Values; may be infinite
    float upper = 0;                  ///< likewise
    std::vector<Point> polygon;       ///< closed by itself; inside by the rule of even and odd
    ValueRange edge;                  ///< of the cells
    std::vector<std::uint32_t> cells; ///< indices as ScopeSolid::index gives them, ascending

    /** Whether red, green and blue of a signal are chosen, with luma and chroma by `matrix`. */
    bool contains(const std::array<float, 3>& rgb, const RgbToYCbCrMatrix& matrix) const noexcept;

    /** Whether they are the same, and whether they are not. */
    friend bool operator==(const ScopeSelection& a, const ScopeSelection& b) noexcept {
        return a.kind == b.kind && a.channel == b.channel && a.lower == b.lower &&
               a.upper == b.upper && a.polygon == b.polygon && a.edge == b.edge &&
               a.cells == b.cells;
    }
    friend bool operator!=(const ScopeSelection& a, const ScopeSelection& b) noexcept {
        return !(a == b);
    }
};

/** For each pixel of the image, row by row, 255 where it is chosen and 0 elsewhere, for an overlay on
    the picture; pixels that the image's alpha leaves out are not chosen. Calls the encoding's
    transform in the caller's thread, and lets through what it throws. Any thread. */
KXUI_EXPORT std::vector<std::uint8_t> selectionMask(const ScopeImage& image,
                                                    const ScopeEncoding& encoding,
                                                    const ScopeSelection& selection);

/** What a pixel, or the pixels around it, are worth. A plain value; its layout is frozen. */
struct KXUI_EXPORT ScopeSample {
    int x = 0;                  ///< in the full frame
    int y = 0;                  ///< likewise
    int radius = 0;             ///< the mean is that of 2 radius + 1 pixels each way
    int pixels = 0;             ///< that were in the image and finite; 0: the first one alone
    std::array<float, 3> rgb{}; ///< the signal; not finite where no pixel was
    float alpha = 1;            ///< likewise
    float luma = 0;             ///< of `rgb`
    float cb = 0;               ///< of `rgb`
    float cr = 0;               ///< of `rgb`
};

/** Reads a sample; an empty one, with `rgb` 0 and `pixels` -1, outside the image. Any thread, with
    what selectionMask() says about the transform. */
KXUI_EXPORT ScopeSample scopeSample(const ScopeImage& image, const ScopeEncoding& encoding, int x,
                                    int y, int radius = 0);

/** The first pixel that is chosen, row by row from the upper left, read as a sample; nothing where there
    is none. Any thread, as above. */
KXUI_EXPORT std::optional<ScopeSample> findScopePixel(const ScopeImage& image,
                                                      const ScopeEncoding& encoding,
                                                      const ScopeSelection& selection);
/** The same among the pixels of a part of the full frame. */
KXUI_EXPORT std::optional<ScopeSample> findScopePixel(const ScopeImage& image,
                                                      const ScopeEncoding& encoding,
                                                      const ScopeSelection& selection,
                                                      const ScopeRegion& region);

} // namespace Kestrel::UI
