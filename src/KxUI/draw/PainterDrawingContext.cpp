#include <KxUI/draw/PainterDrawingContext.h>

#include <KxUI/draw/CloudRaster_p.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneTable_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QPainter>

#include <cmath>
#include <vector>

namespace Kestrel::UI {

class PainterDrawingContextPrivate {
public:
    PainterDrawingContextPrivate(QPainter& toDrawBy, const QSizeF& logicalSize, qreal deviceRatio)
        : painter(toDrawBy)
        , size(logicalSize)
        , ratio(deviceRatio > 0 ? deviceRatio : 1) {
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    }
    ~PainterDrawingContextPrivate() { painter.restore(); }
    PainterDrawingContextPrivate(const PainterDrawingContextPrivate&) = delete;
    PainterDrawingContextPrivate& operator=(const PainterDrawingContextPrivate&) = delete;

    void setStroke(const LineStroke& stroke) {
        painter.setRenderHint(QPainter::Antialiasing, true);
        const QColor color = stroke.color.isValid() ? stroke.color : QColor(Qt::black);
        painter.setPen(QPen(color, stroke.width > 0 ? stroke.width : 1 / ratio, stroke.style,
                            Qt::FlatCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
    }

    // Upright and level lines whose edges lie between device pixels, as those of grids: rectangles are the
    // same picture at a tenth of the cost.
    bool drawCrisp(const QLineF* lines, int count, const LineStroke& stroke) {
        const double width = stroke.width > 0 ? stroke.width : 1 / ratio;
        std::vector<QRectF> rects;
        for (const QLineF* line = lines; line != lines + count; ++line) {
            const bool isUpright = line->x1() == line->x2();
            if (stroke.style != Qt::SolidLine || (!isUpright && line->y1() != line->y2()))
                return false;
            const double half = width / 2;
            const QRectF rect = QRectF(line->p1(), line->p2()).normalized();
            rects.push_back(isUpright ? rect.adjusted(-half, 0, half, 0)
                                      : rect.adjusted(0, -half, 0, half));
            if (!isOnPixels(rects.back()))
                return false;
        }
        painter.setRenderHint(QPainter::Antialiasing, false);
        const QColor color = stroke.color.isValid() ? stroke.color : QColor(Qt::black);
        for (const QRectF& rect : rects)
            painter.fillRect(rectOnPixels(rect, ratio), color);
        return true;
    }

    bool isOnPixels(const QRectF& rect) const {
        for (const double edge : {rect.left(), rect.top(), rect.right(), rect.bottom()})
            if (std::abs(edge * ratio - std::round(edge * ratio)) > 1e-3)
                return false;
        return true;
    }

    QPainter& painter;
    const QSizeF size;
    const qreal ratio;
};

PainterDrawingContext::PainterDrawingContext(QPainter& painter, const QSizeF& size, qreal ratio)
    : d(std::make_unique<PainterDrawingContextPrivate>(painter, size, ratio)) {}

PainterDrawingContext::~PainterDrawingContext() = default;

QSizeF PainterDrawingContext::size() const {
    return d->size;
}

qreal PainterDrawingContext::devicePixelRatio() const {
    return d->ratio;
}

void PainterDrawingContext::rectangles(const QRectF* rects, int count, const QColor& color) {
    d->painter.setRenderHint(QPainter::Antialiasing, false);
    for (int i = 0; i < count; ++i)
        d->painter.fillRect(rectOnPixels(rects[i], d->ratio), color);
}

void PainterDrawingContext::lines(const QLineF* lines, int count, const LineStroke& stroke) {
    if (count <= 0 || d->drawCrisp(lines, count, stroke))
        return;
    d->setStroke(stroke);
    d->painter.drawLines(lines, count);
}

void PainterDrawingContext::polyline(const QPointF* points, int count, const LineStroke& stroke) {
    if (count < 2)
        return;
    d->setStroke(stroke);
    d->painter.drawPolyline(points, count);
}

void PainterDrawingContext::polygon(const QPointF* points, int count, const QColor& color) {
    if (count < 3)
        return;
    d->painter.setRenderHint(QPainter::Antialiasing, true);
    d->painter.setPen(Qt::NoPen);
    d->painter.setBrush(color);
    d->painter.drawPolygon(points, count, Qt::OddEvenFill);
}

void PainterDrawingContext::text(const QRectF& rect, int flags, const QString& text,
                                 const QFont& font, const QColor& color) {
    d->painter.setFont(font);
    d->painter.setPen(color);
    d->painter.drawText(rect, flags | Qt::TextDontClip, text);
}

void PainterDrawingContext::image(const QRectF& target, const QImage& image) {
    if (!image.isNull())
        d->painter.drawImage(rectOnPixels(target, d->ratio), image, QRectF(image.rect()));
}

void PainterDrawingContext::intensity(const QRectF& target, const IntensityGrid& grid,
                                      const ToneCurve& tone, const QColor& color) {
    if (grid.isEmpty())
        return;
    d->painter.setCompositionMode(QPainter::CompositionMode_Plus);
    image(target, lightOf(grid, tone, color));
    d->painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void PainterDrawingContext::points(const QRectF& viewport, const QMatrix4x4& view,
                                   const CloudPoint* points, int count) {
    if (count <= 0 || !points)
        return;
    const QRectF rect = rectOnPixels(viewport, d->ratio);
    const QSize pixels = (rect.size() * d->ratio).toSize();
    image(rect, rasterizeCloud(pixels, d->ratio, view, points, count));
}

void PainterDrawingContext::setClip(const QRectF& rect) {
    if (rect.isEmpty())
        d->painter.setClipping(false);
    else
        d->painter.setClipRect(rectOnPixels(rect, d->ratio));
}

} // namespace Kestrel::UI
