#include <KxUI/charts/LineDrawing_p.h>

#include <KxUI/charts/LineSpans_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double AreaLight = 0.22;
constexpr int Shades = 16;
constexpr double TallSpan = 12;

QColor faded(const QColor& color, double part) {
    QColor other = color;
    other.setAlphaF(ColorPart(color.alphaF() * ColorPart(part)));
    return other;
}

AxisScale onDevice(const AxisScale& scale, double ratio) {
    AxisScale other = scale;
    other.origin *= ratio;
    other.length *= ratio;
    return other;
}

// Where 0 is, or the end of the axis that is nearer to it.
double groundOf(const AxisScale& y) {
    return y.pixel(y.isLogarithmic ? y.lower : std::clamp(0.0, y.lower, y.upper));
}

// Columns of device pixels. Those that a line ends in are shaded by how much of them it covers,
// gathered by shade, so that a repaint takes a few calls.
class SpanPainter {
public:
    SpanPainter(DrawingContext& context, const QRectF& plot)
        : m_context(context)
        , m_ratio(context.devicePixelRatio())
        , m_top(plot.top() * m_ratio)
        , m_bottom(plot.bottom() * m_ratio) {}

    void add(int column, double top, double bottom) {
        top = std::max(top, m_top);
        bottom = std::min(bottom, m_bottom);
        if (!(top < bottom))
            return;
        // The ends of a tall span are noise, which no shade makes smoother.
        if (bottom - top > TallSpan) {
            put(Shades, column, std::round(top), std::round(bottom));
            return;
        }
        const double first = std::floor(top);
        const double last = std::floor(bottom);
        if (first == last) {
            shade(column, first, bottom - top);
            return;
        }
        shade(column, first, first + 1 - top);
        shade(column, last, bottom - last);
        if (first + 1 < last)
            put(Shades, column, first + 1, last);
    }

    void paint(const QColor& color) {
        for (std::size_t i = 1; i <= Shades; ++i) {
            std::vector<QRectF>& rects = m_rects[i];
            m_context.rectangles(rects.data(), int(rects.size()),
                                 i == Shades ? color : faded(color, double(i) / Shades));
            rects.clear();
        }
    }

private:
    void shade(int column, double row, double part) {
        put(std::size_t(std::lround(part * Shades)), column, row, row + 1);
    }

    void put(std::size_t shade, int column, double top, double bottom) {
        m_rects[shade].emplace_back(column / m_ratio, top / m_ratio, 1 / m_ratio,
                                    (bottom - top) / m_ratio);
    }

    DrawingContext& m_context;
    const double m_ratio;
    const double m_top;
    const double m_bottom;
    std::array<std::vector<QRectF>, Shades + 1> m_rects;
};

void drawDense(DrawingContext& context, const std::vector<LineSpan>& spans, const QRectF& plot,
               double ground, const LineLook& look) {
    SpanPainter painter(context, plot);
    if (look.style == LineSeries::Area) {
        for (const LineSpan& span : spans)
            painter.add(span.column, std::min(span.top, ground), std::max(span.bottom, ground));
        painter.paint(faded(look.color, AreaLight));
    }
    const double half = std::max(look.width * context.devicePixelRatio(), 1.0) / 2;
    for (const LineSpan& span : spans)
        painter.add(span.column, span.top - half, span.bottom + half);
    painter.paint(look.color);
}

void drawDots(DrawingContext& context, const std::vector<std::vector<QPointF>>& runs,
              const QColor& color, double radius) {
    std::array<QPointF, 12> disc;
    for (const std::vector<QPointF>& run : runs)
        for (const QPointF& middle : run) {
            for (std::size_t i = 0; i < disc.size(); ++i) {
                const double angle = double(i) * 2 * M_PI / double(disc.size());
                disc[i] = middle + QPointF(std::cos(angle), std::sin(angle)) * radius;
            }
            context.polygon(disc.data(), int(disc.size()), color);
        }
}

void drawSparse(DrawingContext& context, const std::vector<std::vector<QPointF>>& runs,
                double ground, const LineLook& look) {
    if (look.style == LineSeries::Points) {
        drawDots(context, runs, look.color, look.width + 1);
        return;
    }
    for (const std::vector<QPointF>& run : runs) {
        if (look.style == LineSeries::Area) {
            std::vector<QPointF> around = run;
            around.emplace_back(run.back().x(), ground);
            around.emplace_back(run.front().x(), ground);
            context.polygon(around.data(), int(around.size()), faded(look.color, AreaLight));
        }
        if (run.size() == 1)
            drawDots(context, {run}, look.color, look.width); // no line shows a point between gaps
        context.polyline(run.data(), int(run.size()), {look.color, look.width, look.dashes});
    }
}

} // namespace

void drawLine(DrawingContext& context, const LineData& data, const QRectF& plot, const AxisScale& x,
              const AxisScale& y, const LineLook& look) {
    if (data.size() == 0 || plot.isEmpty())
        return;
    const double ratio = context.devicePixelRatio();
    const LineJoin join = look.style == LineSeries::Points ? LineJoin::None
                          : look.style == LineSeries::Step ? LineJoin::Steps
                                                           : LineJoin::Straight;
    const int columns = int(std::lround(plot.width() * ratio));
    // Dashes of that many points could not be told apart.
    if (pointsWithin(data, x) * 2 < std::size_t(columns)) {
        drawSparse(context, lineRuns(data, x, y, join, plot.right()), groundOf(y), look);
        return;
    }
    const auto spans = lineSpans(data, onDevice(x, ratio), onDevice(y, ratio), join,
                                 int(std::lround(plot.left() * ratio)), columns);
    drawDense(context, spans, plot, groundOf(y) * ratio, look);
}

} // namespace Kestrel::UI
