#pragma once

#include <KxUI/Export.h>
#include <KxUI/color/ColorConversions.h>

#include <cstddef>
#include <memory>

namespace Kestrel::UI {

/** A part of a frame, in pixels of the full frame. A plain value; its layout is frozen. */
struct KXUI_EXPORT ScopeRegion {
    int left = 0;   ///< first column
    int top = 0;    ///< first row
    int width = 0;  ///< columns; 0 or less: nothing
    int height = 0; ///< rows; 0 or less: nothing

    /** Whether there is no pixel in it. */
    bool isEmpty() const noexcept { return width <= 0 || height <= 0; }
    /** What both have, or an empty region. */
    ScopeRegion intersected(const ScopeRegion& other) const noexcept;

    /** Whether they are the same, and whether they are not. */
    friend bool operator==(const ScopeRegion& a, const ScopeRegion& b) noexcept {
        return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
    }
    friend bool operator!=(const ScopeRegion& a, const ScopeRegion& b) noexcept {
        return !(a == b);
    }
};

/** Pixels that scopes read. A value: copies share the memory, which `owner` keeps. The pixels must
    not change while anybody may read them. Any thread. */
struct KXUI_EXPORT ScopeImage {
    /** What becomes of alpha before pixels are counted. */
    enum class Alpha {
        AsStored,       ///< nothing: the stored, mostly premultiplied values are counted
        Unpremultiply,  ///< values are divided by alpha; pixels without it are left out
        SkipTransparent ///< pixels whose alpha is 0 are left out
    };

    std::shared_ptr<const void> owner; ///< keeps the memory; may be null if something else does
    const void* pixels = nullptr;      ///< the first row; null: no picture
    PixelLayout layout = PixelLayout::RGBAHalf; ///< how a row is packed
    int width = 0;                              ///< pixels in a row
    int height = 0;                             ///< rows
    std::ptrdiff_t stride = 0;                  ///< bytes from row to row; negative: bottom-up
    int colorSpace = ColorSpace::Rec709;        ///< `ColorSpace::Index` of YCbCr layouts
    int left = 0;                               ///< where the first pixel lies in the full frame
    int top = 0;                                ///< likewise
    int proxy = 1;                 ///< full-frame pixels that a pixel stands for, each way
    Alpha alpha = Alpha::AsStored; ///< see there

    /** Whether there is nothing to count. */
    bool isEmpty() const noexcept;
    /** The pixels of a row that can be told: V210 holds whole groups of six only. */
    int usableWidth() const noexcept;
    /** The full-frame pixels that the image covers. */
    ScopeRegion frame() const noexcept;
    /** Whether the layout stores alpha. */
    bool hasAlpha() const noexcept;
};

} // namespace Kestrel::UI
