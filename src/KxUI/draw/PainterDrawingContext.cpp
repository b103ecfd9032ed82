#include <KxUI/draw/PainterDrawingContext.h>

#include <KxUI/draw/CloudRaster_p.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneTable_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

namespace Kestrel::UI {

class PainterDrawingContextPrivate {
public:
    PainterDrawingContextPrivate(QPainter& toDrawBy, const QSizeF& logicalSize, qreal deviceRatio)
        : painter(toDrawBy)
        , size(logicalSize)
        , ratio(deviceRatio > 0 ? deviceRatio : 1) {
        painter.save();
        findPixels();
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

    // The pixels of a picture whose painter would only do what can be done without it: many small
    // rectangles are drawn in a fraction of the time that it takes to ask for them.
    void findPixels() {
        if (painter.device()->devType() != QInternal::Image || painter.hasClipping() ||
            !painter.worldTransform().isIdentity() || painter.viewTransformEnabled() ||
            painter.opacity() < 1)
            return;
        auto* const image = static_cast<QImage*>(painter.device());
        if (image->format() == QImage::Format_RGB32 && image->devicePixelRatioF() == ratio)
            picture = image;
    }

    QRect visiblePixels() const { return picture->rect() & clip.value_or(picture->rect()); }
    // Where the painter writes, too: it does not look for other holders of the memory either.
    unsigned char* pixels() const { return const_cast<unsigned char*>(picture->constBits()); }

    // Light for light where densities are those of the picture's pixels.
    bool addLight(const QRectF& target, const IntensityGrid& grid, const ToneCurve& tone,
                  const QColor& color) const {
        const QRectF rect = rectOnPixels(target, ratio);
        const QSize targetPixels = (rect.size() * ratio).toSize();
        if (!picture || targetPixels != QSize(grid.width(), grid.height()))
            return false;
        addLightOf(grid, tone, color, (rect.topLeft() * ratio).toPoint(), visiblePixels(), pixels(),
                   picture->bytesPerLine());
        return true;
    }

    bool writePixels(const QRectF* rects, int count, const QColor& color) const {
        if (!picture || color.alpha() < 255 ||
            painter.compositionMode() != QPainter::CompositionMode_SourceOver)
            return false;
        const auto near = [this](double edge, int most) {
            const double place = edge * ratio + 0.5;
            return place >= most ? most : place > 0 ? int(place) : 0;
        };
        const QRect all = visiblePixels();
        unsigned char* const bits = pixels();
        const std::ptrdiff_t stride = picture->bytesPerLine();
        const QRgb pixel = color.rgba();
        for (const QRectF* rect = rects; rect != rects + count; ++rect) {
            const int left = std::max(near(rect->left(), picture->width()), all.left());
            const int right = std::min(near(rect->right(), picture->width()), all.right() + 1);
            const int top = std::max(near(rect->top(), picture->height()), all.top());
            const int bottom = std::min(near(rect->bottom(), picture->height()), all.bottom() + 1);
            for (int y = top; y < bottom && left < right; ++y) {
                auto* const line = reinterpret_cast<QRgb*>(bits + stride * y);
                std::fill(line + left, line + right, pixel);
            }
        }
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
    QImage* picture = nullptr; // whose pixels may be written
    std::optional<QRect> clip; // in pixels of it
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
    if (d->writePixels(rects, count, color))
        return;
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
    if (grid.isEmpty() || d->addLight(target, grid, tone, color))
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
    d->clip.reset();
    if (rect.isEmpty()) {
        d->painter.setClipping(false);
        return;
    }
    const QRectF edges = rectOnPixels(rect, d->ratio);
    d->painter.setClipRect(edges);
    d->clip = QRectF(edges.topLeft() * d->ratio, edges.size() * d->ratio).toRect();
}

} // namespace Kestrel::UI
