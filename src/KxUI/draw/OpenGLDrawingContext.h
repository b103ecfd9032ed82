#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/DrawingContext.h>

#include <memory>

namespace Kestrel::UI {

class OpenGLDrawingContextPrivate;

/** Draws by OpenGL 3.3 or OpenGL ES 3.0 on the framebuffer that is bound, which has a depth buffer.
    Light and clouds are drawn by shaders; lines, texts and images by a painter into textures, which
    are kept as long as frames repeat the same calls. Whatever it is called for needs the same
    OpenGL context to be current; so does its end, or its textures stay until the context goes. Between
    begin() and end() it owns the state of that context, and leaves tests, blending and bindings off.
    The thread that the context is current in. */
class KXUI_EXPORT OpenGLDrawingContext : public DrawingContext {
public:
    /** Makes the programs. */
    OpenGLDrawingContext();
    ~OpenGLDrawingContext() override;

    /** Why nothing can be drawn, in words for a log; empty where all is well. */
    QString error() const;

    /** Begins a frame of `size` logical pixels of `ratio` device pixels, from the lower left corner of
        the framebuffer on. False, and nothing is drawn, after an error and for a size that is empty or
        beyond the textures of the graphics processor. */
    bool begin(const QSizeF& size, qreal ratio);
    /** Ends a frame: all is drawn, as far as OpenGL is concerned. */
    void end();

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
    const std::unique_ptr<OpenGLDrawingContextPrivate> d;
};

} // namespace Kestrel::UI
