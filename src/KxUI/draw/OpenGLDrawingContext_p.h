#pragma once

#include <KxUI/draw/GlPrograms_p.h>
#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/OpenGLDrawingContext.h>
#include <KxUI/draw/RasterLayer_p.h>

#include <QOpenGLExtraFunctions>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace Kestrel::UI {

class OpenGLDrawingContextPrivate {
public:
    OpenGLDrawingContextPrivate();
    ~OpenGLDrawingContextPrivate();
    OpenGLDrawingContextPrivate(const OpenGLDrawingContextPrivate&) = delete;
    OpenGLDrawingContextPrivate& operator=(const OpenGLDrawingContextPrivate&) = delete;

    void begin();
    /** A call that a painter draws. */
    void record(const CallKey& key, std::function<void(DrawingContext&)> call);
    /** Draws what was recorded. */
    void flush();
    void light(const QRect& target, const IntensityGrid& grid, const ToneCurve& tone,
               const QColor& color);
    void cloud(const QRect& viewport, const QMatrix4x4& view, const CloudPoint* points, int count);
    void clear(const QRect& rect, const QColor& color);
    void freeUnused();
    void end();

    QRect onDevice(const QRectF& rect) const;
    bool isDrawing() const { return m_isDrawing; }
    bool hasNothingRecorded() const { return m_layer.isEmpty(); }

    QString error;
    QSizeF size;
    QSize pixels;
    qreal ratio = 1;
    QRectF clip;

private:
    struct LayerTexture {
        QByteArray key;
        GLuint name = 0;
    };
    struct GridTexture {
        IntensityGrid grid;
        GLuint name = 0;
    };

    GLuint newTexture();
    void prepareRectangle(GlPrograms::Program program, const QRect& target);
    /** Limits what is drawn, to `within` and the clip; false where nothing is left. */
    bool scissor(const QRect& within);
    GLuint textureOf(const IntensityGrid& grid);

    QOpenGLExtraFunctions m_gl;
    std::optional<GlPrograms> m_programs;
    GLint m_largestTexture = 0;
    GLuint m_vertexArray = 0;
    GLuint m_buffer = 0;
    RasterLayer m_layer;
    std::vector<LayerTexture> m_layers;
    std::size_t m_usedLayers = 0;
    std::vector<GridTexture> m_grids;
    std::size_t m_usedGrids = 0;
    bool m_isDrawing = false;
};

} // namespace Kestrel::UI
