#include <KxUI/draw/ToneTable_p.h>

#include <QPoint>
#include <QRect>

#include <cmath>
#include <cstddef>

namespace Kestrel::UI {
namespace {

// Each part of both, 255 at most.
QRgb plus(QRgb a, QRgb b) {
    constexpr QRgb Low = 0x7F7F7F7F;
    constexpr QRgb High = 0x80808080;
    const QRgb sum = (a & Low) + (b & Low);
    const QRgb carry = (((a | b) & sum) | (a & b)) & High;
    // A carry makes its part full: 0x80 - 0x01 | 0x80.
    const QRgb full = carry | (carry - (carry >> 7));
    return (sum ^ ((a ^ b) & High)) | full;
}

} // namespace

float ToneTable::middleOf(std::uint32_t bucket) {
    const std::uint32_t bits = bucket << DroppedBits | 1U << (DroppedBits - 1);
    float density = 0;
    std::memcpy(&density, &bits, sizeof density);
    return density;
}

// [0] is of densities that are not above 0. Most are as bright as the faintest one or as the brightest
// one: only between them each is computed.
ToneTable::ToneTable(const ToneCurve& tone, const QColor& color)
    : m_light(Last - First + 2) {
    const double alpha = color.alphaF();
    const auto pixel = [&](double light) {
        const auto part = [light](int code) { return int(std::lround(light * code)); };
        return qRgba(part(color.red()), part(color.green()), part(color.blue()), part(255));
    };
    const auto ofBucket = [&](std::uint32_t bucket) {
        return pixel(tone.light(double(middleOf(bucket))) * alpha);
    };
    const QRgb faintest = ofBucket(First);
    const QRgb brightest = ofBucket(Last);
    // The first bucket that is brighter, found by halves: light never falls as densities rise.
    const auto firstUnlike = [&](QRgb like, bool isLike) {
        std::uint32_t from = First;
        std::uint32_t to = Last + 1;
        while (from < to) {
            const std::uint32_t middle = from + (to - from) / 2;
            if ((ofBucket(middle) == like) == isLike)
                from = middle + 1;
            else
                to = middle;
        }
        return from;
    };
    const std::uint32_t rise = firstUnlike(faintest, true);
    const std::uint32_t end = std::max(rise, firstUnlike(brightest, false));
    m_light[0] = pixel(0);
    const auto at = [this](std::uint32_t bucket) { return m_light.begin() + (bucket - First + 1); };
    std::fill(at(First), at(rise), faintest);
    for (std::uint32_t bucket = rise; bucket < end; ++bucket)
        *at(bucket) = ofBucket(bucket);
    std::fill(at(end), m_light.end(), brightest);
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

void addLightOf(const IntensityGrid& grid, const ToneCurve& tone, const QColor& color,
                const QPoint& topLeft, const QRect& clip, unsigned char* bits,
                std::ptrdiff_t stride) {
    const ToneTable table(tone, color);
    const QRect rect = QRect(topLeft, QSize(grid.width(), grid.height())) & clip;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const float* const from = grid.row(y - topLeft.y()) - topLeft.x();
        auto* const to = reinterpret_cast<QRgb*>(bits + stride * y);
        for (int x = rect.left(); x <= rect.right(); ++x)
            if (from[x] > 0)
                to[x] = plus(to[x], table.at(from[x]));
    }
}

} // namespace Kestrel::UI
