#include "media/Histogram.h"

#include <QRgb>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

/** More than enough for shapes that are some hundred pixels wide. */
constexpr std::int64_t enoughPixels = std::int64_t(1) << 20;

} // namespace

Histogram Histogram::of(const QImage& picture) {
    Histogram histogram;
    if (picture.format() != QImage::Format_RGB32)
        return histogram;
    // Neighbours are often alike: in turns, no count waits for the one before it to be stored.
    std::array<std::array<Counts, 3>, 2> turns{};
    const int width = picture.width();
    const std::int64_t pixels = std::int64_t(width) * picture.height();
    const int step = int(std::max<std::int64_t>((pixels + enoughPixels - 1) / enoughPixels, 1));
    for (int y = 0; y < picture.height(); y += step) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < width; ++x) {
            auto& counts = turns[std::size_t(x & 1)];
            ++counts[0][std::size_t(qRed(row[x]))];
            ++counts[1][std::size_t(qGreen(row[x]))];
            ++counts[2][std::size_t(qBlue(row[x]))];
        }
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        for (std::size_t code = 0; code < 256; ++code)
            histogram.channels[channel][code] = turns[0][channel][code] + turns[1][channel][code];
    }
    return histogram;
}

} // namespace Kestrel::Workbench
