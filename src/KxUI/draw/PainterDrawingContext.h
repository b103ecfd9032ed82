#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/DrawingContext.h>

#include <memory>

class QPainter;

namespace Kestrel::UI {

class PainterDrawingContextPrivate;

/** Draws by a QPainter, on whatever that paints on: the reference for other contexts. Light is added
    by the composition mode Plus, which printers and SVG files do not know. */
class KXUI_EXPORT PainterDrawingContext : public DrawingContext {
public:
    /** Draws by `painter` from its present origin on, over `size` logical pixels of `ratio` device
        pixels. The painter is borrowed, is active, outlives the context, and gets its state back when
        that goes. */
    PainterDrawingContext(QPainter& painter, const QSizeF& size, qreal ratio);
    ~PainterDrawingContext() override;

    QSizeF size() const override;
    qreal devicePixelRatio() const override;
    void rectangles(const QRectF* rects, int count, const QColor& color) override;
    void lines(const QLineF* lines, int count, const LineStroke& stroke) override;
    void polyline(const QPointF* points, int count, const LineStroke& stroke) override;
    void polygon(const QPointF* points, int count, const QColor& color) override;
    void text(const QRectF& rect, int flags, const QString& text, const QFont& font,
              const QColor& color) override;
    void image(const QRectF& target, const QImage& image) override;
    void intensity(const QRectF& target, const IntensityGrid& grid, const ToneCurve& tone,
                   const QColor& color) override;
    void points(const QRectF& viewport, const QMatrix4x4& view, const CloudPoint* points,
                int count) override;
    void setClip(const QRectF& rect) override;

private:
    const std::unique_ptr<PainterDrawingContextPrivate> d;
};

} // namespace Kestrel::UI
