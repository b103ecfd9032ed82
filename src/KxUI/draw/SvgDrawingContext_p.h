#pragma once

#include <KxUI/draw/DrawingContext.h>

#include <QByteArray>
#include <QSize>

namespace Kestrel::UI {

/** Writes what is drawn as SVG 1.1. Light and clouds become pictures in it; texts stay texts, in the
    fonts of whoever shows it. */
class SvgDrawingContext : public DrawingContext {
public:
    explicit SvgDrawingContext(const QSize& size);
    ~SvgDrawingContext() override;

    /** The whole file. */
    QByteArray toSvg() const;

    QSizeF size() const override { return m_size; }
    qreal devicePixelRatio() const override { return 1; }
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
    void path(const QByteArray& data, const LineStroke& stroke);

    const QSizeF m_size;
    QByteArray m_body;
    bool m_isClipped = false;
    int m_clips = 0;
};

} // namespace Kestrel::UI
