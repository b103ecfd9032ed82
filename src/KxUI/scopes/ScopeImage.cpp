#include <KxUI/scopes/ScopeImage.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Kestrel::UI {
namespace {

int limited(std::int64_t value) noexcept {
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

} // namespace

ScopeRegion ScopeRegion::intersected(const ScopeRegion& other) const noexcept {
    if (isEmpty() || other.isEmpty())
        return {};
    const auto end = [](int start, int size) { return std::int64_t(start) + size; };
    const int x = std::max(left, other.left);
    const int y = std::max(top, other.top);
    const ScopeRegion both{x, y,
                           limited(std::min(end(left, width), end(other.left, other.width)) - x),
                           limited(std::min(end(top, height), end(other.top, other.height)) - y)};
    return both.isEmpty() ? ScopeRegion() : both;
}

bool ScopeImage::isEmpty() const noexcept {
    return !pixels || usableWidth() <= 0 || height <= 0 || int(layout) < 0 ||
           int(layout) >= PixelLayoutCount;
}

int ScopeImage::usableWidth() const noexcept {
    return layout == PixelLayout::V210 ? width - width % 6 : width;
}

ScopeRegion ScopeImage::frame() const noexcept {
    if (isEmpty())
        return {};
    const std::int64_t factor = std::max(proxy, 1);
    return {left, top, limited(usableWidth() * factor), limited(height * factor)};
}

bool ScopeImage::hasAlpha() const noexcept {
    switch (layout) {
    case PixelLayout::CbYCrY8:
    case PixelLayout::CbYCrY8LegacyMpeg:
    case PixelLayout::YCbYCr8Legacy:
    case PixelLayout::V210:
    case PixelLayout::RGB8:
    case PixelLayout::RGB16:
    case PixelLayout::RGBFloat:
    case PixelLayout::RGBHalf:
        return false;
    default:
        return true;
    }
}

} // namespace Kestrel::UI
