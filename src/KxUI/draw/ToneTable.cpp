#include <KxUI/draw/ToneTable_p.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace Kestrel::UI {
namespace {

constexpr int DroppedBits = 15;

std::uint32_t bucketOf(float density) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &density, sizeof bits);
    return bits >> DroppedBits;
}

float middleOf(std::uint32_t bucket) {
    const std::uint32_t bits = bucket << DroppedBits | 1U << (DroppedBits - 1);
    float density = 0;
    std::memcpy(&density, &bits, sizeof density);
    return density;
}

// No picture tells apart what is fainter or brighter.
const std::uint32_t First = bucketOf(std::ldexp(1.0F, -32));
const std::uint32_t Last = bucketOf(std::ldexp(1.0F, 24));

} // namespace

// [0] is of densities that are not above 0.
ToneTable::ToneTable(const ToneCurve& tone, const QColor& color)
    : m_light(Last - First + 2) {
    const double alpha = color.alphaF();
    for (std::uint32_t bucket = First; bucket <= Last; ++bucket) {
        const double light = tone.light(double(middleOf(bucket))) * alpha;
        const auto part = [light](int code) { return int(std::lround(light * code)); };
        m_light[bucket - First + 1] =
            qRgba(part(color.red()), part(color.green()), part(color.blue()), part(255));
    }
}

QRgb ToneTable::at(float density) const {
    if (!(density > 0))
        return m_light[0];
    return m_light[std::clamp(bucketOf(density), First, Last) - First + 1];
}

QImage lightOf(const IntensityGrid& grid, const ToneCurve& tone, const QColor& color) {
    QImage image(grid.width(), grid.height(), QImage::Format_ARGB32_Premultiplied);
    const ToneTable table(tone, color);
    for (int y = 0; y < image.height(); ++y) {
        const float* const from = grid.row(y);
        auto* const to = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            to[x] = table.at(from[x]);
    }
    return image;
}

} // namespace Kestrel::UI
