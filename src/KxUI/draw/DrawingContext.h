#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/LineStroke.h>

#include <QFont>
#include <QImage>
#include <QLineF>
#include <QMatrix4x4>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

namespace Kestrel::UI {

struct CloudPoint;
class IntensityGrid;
struct ToneCurve;

/** What scopes and charts are drawn with, by a painter or by OpenGL: whatever is drawn looks the same
    by both. Coordinates are logical pixels from the upper left corner. What is drawn later lies on
    what was drawn before. Arguments are read during the call; counts of 0 and null memory draw
    nothing. The thread of the device that is drawn on. */
class KXUI_EXPORT DrawingContext {
public:
    virtual ~DrawingContext();
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;

    /** The size in logical pixels. */
    virtual QSizeF size() const = 0;
    /** Device pixels to a logical one, each way; above 0. */
    virtual qreal devicePixelRatio() const = 0;

    /** Fills rectangles whose edges go to the nearest places between device pixels. */
    virtual void rectangles(const QRectF* rects, int count, const QColor& color) = 0;
    /** Lines that have nothing to do with each other, with smooth edges and flat ends. */
    virtual void lines(const QLineF* lines, int count, const LineStroke& stroke) = 0;
    /** A line through points, with smooth edges and round joins. A single point draws nothing. */
    virtual void polyline(const QPointF* points, int count, const LineStroke& stroke) = 0;
    /** Fills what lies within a closed line (by the odd-even rule), with smooth edges. */
    virtual void polygon(const QPointF* points, int count, const QColor& color) = 0;
    /** A line of text, placed within `rect` by the Qt::Alignment and Qt::TextFlag bits of `flags`; what
        is longer hangs over. */
    virtual void text(const QRectF& rect, int flags, const QString& text, const QFont& font,
                      const QColor& color) = 0;
    /** An image over a rectangle; of another size than that, its nearest pixels. */
    virtual void image(const QRectF& target, const QImage& image) = 0;
    /** The light of `color` times the tone of each density, added to what is there. The grid is meant
        to have as many pixels as the target has device pixels; else its nearest ones are shown. */
    virtual void intensity(const QRectF& target, const IntensityGrid& grid, const ToneCurve& tone,
                           const QColor& color) = 0;
    /** Opaque discs, nearer ones in front: `view` takes a point to -1..1 (x rightwards, y upwards) in
        `viewport`, z -1 being nearest. Points whose middle is outside are left out. Clouds of separate
        calls lie one on the other, whatever their depth. */
    virtual void points(const QRectF& viewport, const QMatrix4x4& view, const CloudPoint* points,
                        int count) = 0;
    /** Nothing is drawn outside of this rectangle from now on; its edges go to the nearest places
        between device pixels. An empty one, as QRectF(), stands for everything. */
    virtual void setClip(const QRectF& rect) = 0;

    /** One rectangle. */
    void fill(const QRectF& rect, const QColor& color);
    /** One line. */
    void line(const QPointF& from, const QPointF& to, const LineStroke& stroke);

protected:
    DrawingContext();
};

} // namespace Kestrel::UI
