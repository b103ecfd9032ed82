#include <KxUI/draw/CloudRaster_p.h>

#include <QVector4D>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace Kestrel::UI {
namespace {

class CloudRaster {
public:
    explicit CloudRaster(const QSize& size)
        : m_image(size, QImage::Format_ARGB32_Premultiplied)
        , m_nearest(std::size_t(size.width()) * std::size_t(size.height()),
                    std::numeric_limits<float>::infinity()) {
        m_image.fill(Qt::transparent);
        m_pixels = reinterpret_cast<QRgb*>(m_image.bits());
        m_width = std::size_t(m_image.bytesPerLine()) / sizeof(QRgb);
    }

    // The middle and the radius in device pixels.
    void add(float x, float y, float depth, float radius, QRgb color) {
        const int top = std::max(0, int(std::ceil(y - radius - 0.5F)));
        const int bottom = std::min(m_image.height() - 1, int(std::floor(y + radius - 0.5F)));
        const int middle = int(y);
        for (int row = std::min(top, middle); row <= std::max(bottom, middle); ++row) {
            const float down = float(row) + 0.5F - y;
            const float across = std::sqrt(std::max(0.0F, radius * radius - down * down));
            const bool touched = down * down <= radius * radius;
            int left = touched ? std::max(0, int(std::ceil(x - across - 0.5F))) : m_image.width();
            int right =
                touched ? std::min(m_image.width() - 1, int(std::floor(x + across - 0.5F))) : -1;
            if (row == middle) {
                left = std::min(left, int(x));
                right = std::max(right, int(x));
            }
            span(row, left, right, depth, color);
        }
    }

    QImage image() && { return std::move(m_image); }

private:
    void span(int row, int left, int right, float depth, QRgb color) {
        QRgb* const line = m_pixels + std::size_t(row) * m_width;
        float* const nearest = m_nearest.data() + std::size_t(row) * std::size_t(m_image.width());
        // Without branches, which would be guessed wrong as often as not.
        for (int column = left; column <= right; ++column) {
            const bool isNearer = depth < nearest[column];
            line[column] = isNearer ? color : line[column];
            nearest[column] = isNearer ? depth : nearest[column];
        }
    }

    QImage m_image;
    QRgb* m_pixels = nullptr; // of the image
    std::size_t m_width = 0;  // pixels from row to row
    std::vector<float> m_nearest;
};

} // namespace

QImage rasterizeCloud(const QSize& size, qreal ratio, const QMatrix4x4& view,
                      const CloudPoint* points, int count) {
    if (size.isEmpty())
        return {};
    CloudRaster raster(size);
    const auto width = float(size.width());
    const auto height = float(size.height());
    for (const CloudPoint* point = points; point != points + count; ++point) {
        const QVector4D place = view * QVector4D(point->x, point->y, point->z, 1);
        const float w = place.w();
        const auto isInside = [w](float each) { return each >= -w && each <= w; };
        if (!(w > 0 && isInside(place.x()) && isInside(place.y()) && isInside(place.z())))
            continue;
        const float radius = std::clamp(point->radius, 0.0F, LargestPointRadius);
        // The right and the lower edge belong to the last pixels.
        raster.add(std::min((place.x() / w + 1) / 2 * width, std::nextafter(width, 0.0F)),
                   std::min((1 - place.y() / w) / 2 * height, std::nextafter(height, 0.0F)),
                   place.z() / w, radius * float(ratio), point->color | 0xFF000000U);
    }
    return std::move(raster).image();
}

} // namespace Kestrel::UI
