#pragma once

#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneCurve.h>

#include <QColor>
#include <QImage>
#include <QRgb>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace Kestrel::UI {

/** The light of every density, by the upper bits of its float: as exact as eight bits can show, and a
    load where a logarithm would be. */
class ToneTable {
public:
    ToneTable(const ToneCurve& tone, const QColor& color);

    /** Premultiplied. */
    QRgb at(float density) const {
        return density > 0 ? m_light[std::clamp(bucketOf(density), First, Last) - First + 1]
                           : m_light[0];
    }

private:
    static constexpr int DroppedBits = 15;
    // No picture tells apart what is fainter than 2^-32 or brighter than 2^24.
    static constexpr std::uint32_t First = (127 - 32) << (23 - DroppedBits);
    static constexpr std::uint32_t Last = (127 + 24) << (23 - DroppedBits);

    static std::uint32_t bucketOf(float density) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &density, sizeof bits);
        return bits >> DroppedBits;
    }
    static float middleOf(std::uint32_t bucket);

    std::vector<QRgb> m_light;
};

/** The light of a whole grid, a pixel for each density. */
QImage lightOf(const IntensityGrid& grid, const ToneCurve& tone, const QColor& color);

/** The same, added to the pixels of an opaque picture of RGB32 from `topLeft` on, within `clip`. */
void addLightOf(const IntensityGrid& grid, const ToneCurve& tone, const QColor& color,
                const QPoint& topLeft, const QRect& clip, unsigned char* bits,
                std::ptrdiff_t stride);

} // namespace Kestrel::UI
