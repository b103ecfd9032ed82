#include <KxUI/draw/OpenGLDrawingContext.h>

#include <KxUI/draw/CloudPoint.h>
#include <KxUI/draw/OpenGLDrawingContext_p.h>
#include <KxUI/draw/ToneCurve.h>

#include <vector>

namespace Kestrel::UI {
namespace {

// The others are drawn with what lies around them: each change to and fro costs a texture.
constexpr int MostClears = 4;

} // namespace

OpenGLDrawingContext::OpenGLDrawingContext()
    : d(std::make_unique<OpenGLDrawingContextPrivate>()) {}

OpenGLDrawingContext::~OpenGLDrawingContext() = default;

QString OpenGLDrawingContext::error() const {
    return d->error;
}

bool OpenGLDrawingContext::begin(const QSizeF& size, qreal ratio) {
    d->size = size;
    d->ratio = ratio > 0 ? ratio : 1;
    d->begin();
    return d->isDrawing();
}

void OpenGLDrawingContext::end() {
    d->end();
}

QSizeF OpenGLDrawingContext::size() const {
    return d->size;
}

qreal OpenGLDrawingContext::devicePixelRatio() const {
    return d->ratio;
}

void OpenGLDrawingContext::rectangles(const QRectF* rects, int count, const QColor& color) {
    if (!d->isDrawing() || count <= 0)
        return;
    if (color.alpha() == 255 && count <= MostClears && d->hasNothingRecorded()) {
        for (int i = 0; i < count; ++i)
            d->clear(d->onDevice(rects[i]), color);
        return;
    }
    d->record(CallKey('r').with(rects, count).with(color),
              [all = std::vector<QRectF>(rects, rects + count), color](DrawingContext& context) {
                  context.rectangles(all.data(), int(all.size()), color);
              });
}

void OpenGLDrawingContext::lines(const QLineF* lines, int count, const LineStroke& stroke) {
    if (count <= 0)
        return;
    d->record(CallKey('l').with(lines, count).with(stroke),
              [all = std::vector<QLineF>(lines, lines + count), stroke](DrawingContext& context) {
                  context.lines(all.data(), int(all.size()), stroke);
              });
}

void OpenGLDrawingContext::polyline(const QPointF* points, int count, const LineStroke& stroke) {
    if (count < 2)
        return;
    d->record(
        CallKey('p').with(points, count).with(stroke),
        [all = std::vector<QPointF>(points, points + count), stroke](DrawingContext& context) {
            context.polyline(all.data(), int(all.size()), stroke);
        });
}

void OpenGLDrawingContext::polygon(const QPointF* points, int count, const QColor& color) {
    if (count < 3)
        return;
    d->record(CallKey('g').with(points, count).with(color),
              [all = std::vector<QPointF>(points, points + count), color](DrawingContext& context) {
                  context.polygon(all.data(), int(all.size()), color);
              });
}

void OpenGLDrawingContext::text(const QRectF& rect, int flags, const QString& text,
                                const QFont& font, const QColor& color) {
    CallKey key('t');
    key.with(rect).with(&flags, 1).with(text.toUtf8()).with(font.toString().toUtf8()).with(color);
    d->record(key, [=](DrawingContext& context) { context.text(rect, flags, text, font, color); });
}

void OpenGLDrawingContext::image(const QRectF& target, const QImage& image) {
    if (image.isNull())
        return;
    const qint64 pixels = image.cacheKey();
    d->record(CallKey('i').with(target).with(&pixels, 1),
              [=](DrawingContext& context) { context.image(target, image); });
}

void OpenGLDrawingContext::intensity(const QRectF& target, const IntensityGrid& grid,
                                     const ToneCurve& tone, const QColor& color) {
    if (!d->isDrawing() || grid.isEmpty())
        return;
    d->light(d->onDevice(target), grid, tone, color);
}

void OpenGLDrawingContext::points(const QRectF& viewport, const QMatrix4x4& view,
                                  const CloudPoint* points, int count) {
    if (d->isDrawing() && points && count > 0)
        d->cloud(d->onDevice(viewport), view, points, count);
}

void OpenGLDrawingContext::setClip(const QRectF& rect) {
    d->clip = rect;
    if (!d->hasNothingRecorded())
        d->record(CallKey('c').with(rect),
                  [rect](DrawingContext& context) { context.setClip(rect); });
}

} // namespace Kestrel::UI
