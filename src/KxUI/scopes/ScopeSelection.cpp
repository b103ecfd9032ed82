#include <KxUI/scopes/ScopeSelection.h>

#include <KxUI/scopes/PixelReader_p.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

float dot(const std::array<float, 3>& row, const std::array<float, 3>& rgb) noexcept {
    return row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2];
}

bool isNumber(float value) noexcept {
    return value == value;
}

bool isInside(const std::vector<ScopeSelection::Point>& polygon, float cb, float cr) noexcept {
    bool inside = false;
    for (std::size_t i = 0, before = polygon.size() - 1; i < polygon.size(); before = i++) {
        const auto& a = polygon[i];
        const auto& b = polygon[before];
        if ((a.cr > cr) != (b.cr > cr) && cb < (b.cb - a.cb) * (cr - a.cr) / (b.cr - a.cr) + a.cb)
            inside = !inside;
    }
    return inside;
}

bool isInCells(const ScopeSelection& selection, const std::array<float, 3>& rgb) noexcept {
    const ValueRange& edge = selection.edge;
    std::uint32_t cell = 0;
    for (std::size_t i = 3; i-- > 0;) {
        const int bin = edge.binOf(rgb[i]);
        if (bin >= edge.bins)
            return false;
        cell = cell * std::uint32_t(edge.bins) + std::uint32_t(bin);
    }
    return std::binary_search(selection.cells.begin(), selection.cells.end(), cell);
}

// No numbers where there is none: for greys there is no hue.
std::pair<float, float> hueAndSaturation(const std::array<float, 3>& rgb) noexcept {
    if (!std::all_of(rgb.begin(), rgb.end(), [](float each) { return std::isfinite(each); }))
        return {NAN, NAN};
    float hue = 0;
    float saturation = 0;
    float value = 0;
    rgbToHsv(rgb[0], rgb[1], rgb[2], hue, saturation, value);
    return {saturation > 0 ? hue : NAN, saturation};
}

bool isWithin(const ScopeSelection& selection, float value) noexcept {
    return selection.kind == ScopeSelection::Kind::NotANumber
               ? !isNumber(value)
               : value >= selection.lower && value <= selection.upper;
}

} // namespace

bool ScopeSelection::contains(const std::array<float, 3>& rgb,
                              const RgbToYCbCrMatrix& matrix) const noexcept {
    const bool numbers = std::all_of(rgb.begin(), rgb.end(), isNumber);
    switch (kind) {
    case Kind::Nothing:
        return false;
    case Kind::Everything:
        return true;
    case Kind::Chroma:
        return numbers && !polygon.empty() &&
               isInside(polygon, dot(matrix.cb, rgb), dot(matrix.cr, rgb));
    case Kind::Cells:
        return numbers && isInCells(*this, rgb);
    case Kind::Values:
    case Kind::NotANumber:
        break;
    }
    switch (channel) {
    case Red:
    case Green:
    case Blue:
        return isWithin(*this, rgb[std::size_t(channel)]);
    case Luma:
        return isWithin(*this, dot(matrix.luma, rgb));
    case Cb:
        return isWithin(*this, dot(matrix.cb, rgb));
    case Cr:
        return isWithin(*this, dot(matrix.cr, rgb));
    case Largest:
        return isWithin(*this, numbers ? *std::max_element(rgb.begin(), rgb.end()) : NAN);
    case Saturation:
    case Hue: {
        const auto [hue, saturation] = hueAndSaturation(rgb);
        return isWithin(*this, channel == Hue ? hue : saturation);
    }
    case Any:
        break;
    }
    return std::any_of(rgb.begin(), rgb.end(),
                       [this](float value) { return isWithin(*this, value); });
}

namespace {

// The pixels of the image itself that a part of the full frame touches.
ScopeRegion ownPixels(const ScopeImage& image, const ScopeRegion& region) {
    const ScopeRegion part = image.frame().intersected(region);
    const int proxy = std::max(image.proxy, 1);
    const int left = (part.left - image.left) / proxy;
    const int top = (part.top - image.top) / proxy;
    const auto behind = [proxy](int edge) { return (edge + proxy - 1) / proxy; };
    return {left, top, behind(part.left + part.width - image.left) - left,
            behind(part.top + part.height - image.top) - top};
}

// Calls `visit(x, y)` for those of the image's pixels `from` that are chosen, row by row, until it
// says false.
template <class Visit>
void visitChosen(const ScopeImage& image, const ScopeEncoding& encoding,
                 const ScopeSelection& selection, const ScopeRegion& from, Visit visit) {
    const PixelReader reader(image, encoding);
    const auto piece = std::make_unique<PixelPiece>();
    const int end = std::min(from.left + from.width, image.usableWidth());
    for (int y = from.top; y < from.top + from.height; ++y) {
        for (int x = from.left; x < end; x += int(PixelPiece::Most)) {
            const int count = std::min(end - x, int(PixelPiece::Most));
            reader.read({x, y, std::size_t(count)}, *piece);
            const ColorPlanes colors = piece->colors();
            for (std::size_t i = 0; i < piece->count; ++i) {
                const std::array<float, 3> rgb{colors.red[i], colors.green[i], colors.blue[i]};
                if (selection.contains(rgb, encoding.matrix) && !visit(x + int(piece->place(i)), y))
                    return;
            }
        }
    }
}

} // namespace

std::vector<std::uint8_t> selectionMask(const ScopeImage& image, const ScopeEncoding& encoding,
                                        const ScopeSelection& selection) {
    if (image.isEmpty())
        return {};
    // The pixels that a row of V210 cannot tell stay in the mask, so that it has the image's size.
    std::vector<std::uint8_t> mask(std::size_t(image.width) * std::size_t(image.height));
    visitChosen(image, encoding, selection, {0, 0, image.width, image.height}, [&](int x, int y) {
        mask[std::size_t(y) * std::size_t(image.width) + std::size_t(x)] = 255;
        return true;
    });
    return mask;
}

std::optional<ScopeSample> findScopePixel(const ScopeImage& image, const ScopeEncoding& encoding,
                                          const ScopeSelection& selection) {
    return findScopePixel(image, encoding, selection, image.frame());
}

std::optional<ScopeSample> findScopePixel(const ScopeImage& image, const ScopeEncoding& encoding,
                                          const ScopeSelection& selection,
                                          const ScopeRegion& region) {
    std::optional<ScopeSample> found;
    if (image.isEmpty() || image.frame().intersected(region).isEmpty())
        return found;
    const int proxy = std::max(image.proxy, 1);
    visitChosen(image, encoding, selection, ownPixels(image, region), [&](int x, int y) {
        found = scopeSample(image, encoding, image.left + x * proxy, image.top + y * proxy);
        return false;
    });
    return found;
}

ScopeSample scopeSample(const ScopeImage& image, const ScopeEncoding& encoding, int x, int y,
                        int radius) {
    constexpr int MostRadius = 95; // a row of it is a piece
    ScopeSample sample;
    sample.x = x;
    sample.y = y;
    sample.radius = std::clamp(radius, 0, MostRadius);
    sample.pixels = -1;
    const ScopeRegion at = image.frame().intersected({x, y, 1, 1});
    if (at.isEmpty())
        return sample;
    const int proxy = std::max(image.proxy, 1);
    const int column = (x - image.left) / proxy;
    const int line = (y - image.top) / proxy;
    const PixelReader reader(image, encoding);
    const auto piece = std::make_unique<PixelPiece>();
    reader.read({column, line, 1}, *piece);
    ColorPlanes colors = piece->colors();
    sample.pixels = 0;
    // What alpha leaves out has no colour.
    sample.rgb = piece->count == 1
                     ? std::array<float, 3>{colors.red[0], colors.green[0], colors.blue[0]}
                     : std::array<float, 3>{NAN, NAN, NAN};
    sample.alpha = piece->alphas()[0];
    std::array<double, 4> sums{};
    const int left = std::max(column - sample.radius, 0);
    const int right = std::min(column + sample.radius, image.usableWidth() - 1);
    const int bottom = std::min(line + sample.radius, image.height - 1);
    for (int row = std::max(line - sample.radius, 0); row <= bottom; ++row) {
        reader.read({left, row, std::size_t(right - left + 1)}, *piece);
        colors = piece->colors();
        for (std::size_t i = 0; i < piece->count; ++i) {
            const std::array<float, 4> all{colors.red[i], colors.green[i], colors.blue[i],
                                           piece->alphas()[i]};
            if (!std::all_of(all.begin(), all.end(), [](float v) { return std::isfinite(v); }))
                continue;
            for (std::size_t k = 0; k < all.size(); ++k)
                sums[k] += double(all[k]);
            ++sample.pixels;
        }
    }
    if (sample.pixels > 0) {
        for (std::size_t k = 0; k < 3; ++k)
            sample.rgb[k] = float(sums[k] / sample.pixels);
        sample.alpha = float(sums[3] / sample.pixels);
    }
    sample.luma = dot(encoding.matrix.luma, sample.rgb);
    sample.cb = dot(encoding.matrix.cb, sample.rgb);
    sample.cr = dot(encoding.matrix.cr, sample.rgb);
    return sample;
}

} // namespace Kestrel::UI
