#include <KxUI/curveedit/CurveStroke_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// How much neighbouring slopes may differ, and how steep they may be, for the distance to a line to
// stand for that to the curve.
constexpr float SameSlope = 0.25F;
constexpr float FlatSlope = 4.0F;

constexpr unsigned int Opaque = 256;

float square(float x) {
    return x * x;
}

// Of a point to the line between two others, squared.
float distance(float x, float y, float x0, float y0, float x1, float y1) {
    const float dx = x1 - x0;
    const float dy = y1 - y0;
    const float length = dx * dx + dy * dy;
    const float along = (x - x0) * dx + (y - y0) * dy;
    const float t = length > 0.0F ? std::clamp(along / length, 0.0F, 1.0F) : 0.0F;
    return square(x - x0 - t * dx) + square(y - y0 - t * dy);
}

// The same to the upright line at `across` to the side.
float distanceUpright(float across, float y, float top, float bottom) {
    const float away = y < top ? top - y : y > bottom ? y - bottom : 0.0F;
    return square(across) + square(away);
}

class Pen {
public:
    explicit Pen(const QColor& color)
        : m_color(color.rgb() | 0xff000000U)
        , m_alpha(static_cast<float>(color.alphaF()) * Opaque) {}

    void put(QRgb& pixel, float coverage) const {
        const auto part = static_cast<unsigned int>(coverage * m_alpha + 0.5F);
        if (part >= Opaque)
            pixel = m_color;
        else if (part > 0)
            pixel = mixed(pixel, part);
    }

private:
    // Red and blue at once, with room for their products between them.
    QRgb mixed(QRgb below, unsigned int part) const {
        constexpr unsigned int RedBlue = 0x00ff00ffU;
        constexpr unsigned int Green = 0x0000ff00U;
        const unsigned int rest = Opaque - part;
        const unsigned int redBlue =
            ((m_color & RedBlue) * part + (below & RedBlue) * rest) >> 8 & RedBlue;
        const unsigned int green = ((m_color & Green) * part + (below & Green) * rest) >> 8 & Green;
        return 0xff000000U | redBlue | green;
    }

    QRgb m_color;
    float m_alpha;
};

class Stroke {
public:
    Stroke(QImage& image, const QRect& clip, const CurveColumns& line, double width,
           const QColor& color)
        : m_clip(clip & image.rect())
        , m_bits(image.bits())
        , m_stride(image.bytesPerLine())
        , m_line(line)
        , m_radius(static_cast<float>(width) / 2.0F)
        , m_reach(m_radius + 0.5F)
        , m_neighbours(std::max(1, static_cast<int>(std::ceil(m_reach + 0.5F)) - 1))
        , m_pen(color) {}

    void paint() {
        const int first = std::max(m_clip.left(), m_line.first - m_neighbours);
        const int last = std::min(m_clip.right(), m_line.end() - 1 + m_neighbours);
        for (int x = first; x <= last; ++x)
            paintColumn(x);
    }

private:
    const CurveColumn& column(int x) const {
        return m_line.columns[static_cast<std::size_t>(x - m_line.first)];
    }
    bool has(int x) const { return x >= m_line.first && x < m_line.end(); }

    int rowAtOrBelow(float y) const { return rowOf(std::ceil(y - 0.5F)); }
    int rowOf(float row) const {
        return static_cast<int>(std::clamp(row, static_cast<float>(m_clip.top()),
                                           static_cast<float>(m_clip.bottom() + 1)));
    }

    float coverage(float squared) const {
        const float free = m_reach - std::sqrt(squared);
        return std::min(std::max(free, 0.0F), std::min(1.0F, 2.0F * m_radius));
    }

    // Whether around a column the curve is as good as a straight line.
    bool isFlat(int x) const {
        if (x - m_neighbours < m_line.first || x + m_neighbours >= m_line.end())
            return false;
        const CurveColumn& own = column(x);
        const float slope = own.out - own.in;
        if (std::fabs(slope) > FlatSlope)
            return false;
        for (int each = x - m_neighbours; each <= x + m_neighbours; ++each) {
            const CurveColumn& other = column(each);
            const bool bent = other.dense || std::fabs(other.out - other.in - slope) > SameSlope ||
                              other.top < std::min(other.in, other.out) ||
                              other.bottom > std::max(other.in, other.out);
            if (bent)
                return false;
        }
        return true;
    }

    void paintColumn(int x) {
        if (has(x) && isFlat(x))
            paintFlat(x);
        else
            paintAny(x);
    }

    void paintFlat(int x) {
        const CurveColumn& own = column(x);
        const float middle = (own.in + own.out) / 2.0F;
        const float share = 1.0F / std::sqrt(1.0F + square(own.out - own.in));
        const float reach = m_reach / share;
        const int end = rowAtOrBelow(middle + reach);
        for (int row = rowAtOrBelow(middle - reach); row < end; ++row) {
            const float away = std::fabs(static_cast<float>(row) + 0.5F - middle) * share;
            put(x, row, coverage(square(away)));
        }
    }

    void paintAny(int x) {
        float top = HUGE_VALF;
        float bottom = -HUGE_VALF;
        for (int each = x - m_neighbours; each <= x + m_neighbours; ++each) {
            if (!has(each))
                continue;
            top = std::min(top, column(each).top - m_reach);
            bottom = std::max(bottom, column(each).bottom + m_reach);
        }
        const int first = rowAtOrBelow(top);
        const int end = rowAtOrBelow(bottom);
        // The line passes within half a pixel of these.
        int fullFirst = end;
        int fullEnd = end;
        if (has(x) && (m_radius >= 1.0F || column(x).dense)) {
            fullFirst = std::clamp(rowAtOrBelow(column(x).top), first, end);
            fullEnd = std::clamp(rowAtOrBelow(column(x).bottom), fullFirst, end);
        }
        for (int row = first; row < fullFirst; ++row)
            put(x, row, coverage(nearest(x, static_cast<float>(row) + 0.5F)));
        const float full = std::min(1.0F, 2.0F * m_radius);
        for (int row = fullFirst; row < fullEnd; ++row)
            put(x, row, full);
        for (int row = fullEnd; row < end; ++row)
            put(x, row, coverage(nearest(x, static_cast<float>(row) + 0.5F)));
    }

    // The squared distance of a pixel's middle to the curve in the columns around.
    float nearest(int x, float y) const {
        float best = HUGE_VALF;
        for (int side = -m_neighbours; side <= m_neighbours; ++side) {
            if (!has(x + side))
                continue;
            const CurveColumn& other = column(x + side);
            if (y > other.top - m_reach && y < other.bottom + m_reach)
                best = std::min(best, distanceTo(other, static_cast<float>(side), y));
        }
        return best;
    }

    // To the curve in a column whose middle lies `side` to the right.
    static float distanceTo(const CurveColumn& other, float side, float y) {
        if (other.dense)
            return distanceUpright(side, y, other.top, other.bottom);
        const float left = side - 0.5F;
        const float right = side + 0.5F;
        const bool peak = other.top < std::min(other.in, other.out);
        const bool pit = other.bottom > std::max(other.in, other.out);
        if (!peak && !pit)
            return distance(0.0F, y, left, other.in, right, other.out);
        const float turn = peak ? other.top : other.bottom;
        const float best = std::min(distance(0.0F, y, left, other.in, side, turn),
                                    distance(0.0F, y, side, turn, right, other.out));
        return peak && pit ? std::min(best, distanceUpright(side, y, other.top, other.bottom))
                           : best;
    }

    void put(int x, int row, float coverage) {
        auto* pixels = reinterpret_cast<QRgb*>(m_bits + std::ptrdiff_t(row) * m_stride);
        m_pen.put(pixels[x], coverage);
    }

    QRect m_clip;
    uchar* m_bits;
    std::ptrdiff_t m_stride;
    const CurveColumns& m_line;
    float m_radius;
    float m_reach;
    int m_neighbours; ///< columns on either side that a line can reach over from
    Pen m_pen;
};

} // namespace

void strokeCurve(QImage& image, const QRect& clip, const CurveColumns& line, double width,
                 const QColor& color) {
    if (!line.columns.empty() && width > 0.0)
        Stroke(image, clip, line, width, color).paint();
}

} // namespace Kestrel::UI
