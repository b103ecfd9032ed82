#include <KxUI/draw/CloudPoint.h>
#include <KxUI/draw/CloudRaster_p.h>
#include <KxUI/draw/OpenGLDrawingContext_p.h>
#include <KxUI/draw/ToneCurve.h>
#include <KxUI/kit/Crisp_p.h>

#include <QOpenGLContext>
#include <QSurfaceFormat>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#ifndef GL_PROGRAM_POINT_SIZE // which OpenGL ES always has on
#define GL_PROGRAM_POINT_SIZE 0x8642
#endif

namespace Kestrel::UI {
namespace {

QString unfit(const QOpenGLContext* context) {
    if (!context)
        return QStringLiteral("no OpenGL context is current");
    const QPair<int, int> version = context->format().version();
    if (version < (context->isOpenGLES() ? qMakePair(3, 0) : qMakePair(3, 3)))
        return QStringLiteral("OpenGL %1.%2 is too old").arg(version.first).arg(version.second);
    return {};
}

} // namespace

OpenGLDrawingContextPrivate::OpenGLDrawingContextPrivate() {
    error = unfit(QOpenGLContext::currentContext());
    if (!error.isEmpty())
        return;
    m_gl.initializeOpenGLFunctions();
    m_programs.emplace(m_gl);
    error = m_programs->error();
    m_gl.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_largestTexture);
    m_gl.glGenVertexArrays(1, &m_vertexArray);
    m_gl.glGenBuffers(1, &m_buffer);
}

OpenGLDrawingContextPrivate::~OpenGLDrawingContextPrivate() {
    if (!m_programs || !QOpenGLContext::currentContext())
        return;
    m_usedLayers = 0;
    m_usedGrids = 0;
    freeUnused();
    m_programs->release();
    m_gl.glDeleteBuffers(1, &m_buffer);
    m_gl.glDeleteVertexArrays(1, &m_vertexArray);
}

void OpenGLDrawingContextPrivate::begin() {
    pixels = (size * ratio).toSize();
    m_isDrawing = error.isEmpty() && !pixels.isEmpty() &&
                  std::max(pixels.width(), pixels.height()) <= m_largestTexture;
    if (!m_isDrawing)
        return;
    clip = QRectF();
    m_usedLayers = 0;
    m_usedGrids = 0;
    m_gl.glViewport(0, 0, pixels.width(), pixels.height());
    m_gl.glDisable(GL_DEPTH_TEST);
    m_gl.glDisable(GL_CULL_FACE);
    m_gl.glDisable(GL_STENCIL_TEST);
    m_gl.glEnable(GL_SCISSOR_TEST);
    m_gl.glEnable(GL_BLEND);
    if (!QOpenGLContext::currentContext()->isOpenGLES())
        m_gl.glEnable(GL_PROGRAM_POINT_SIZE);
    m_gl.glBindVertexArray(m_vertexArray);
    m_gl.glActiveTexture(GL_TEXTURE0);
}

void OpenGLDrawingContextPrivate::end() {
    if (!m_isDrawing)
        return;
    flush();
    freeUnused();
    m_gl.glBindVertexArray(0);
    m_gl.glBindTexture(GL_TEXTURE_2D, 0);
    m_gl.glUseProgram(0);
    m_gl.glDisable(GL_SCISSOR_TEST);
    m_gl.glDisable(GL_BLEND);
    m_isDrawing = false;
}

void OpenGLDrawingContextPrivate::record(const CallKey& key,
                                         std::function<void(DrawingContext&)> call) {
    if (!m_isDrawing)
        return;
    if (m_layer.isEmpty() && !clip.isEmpty())
        m_layer.add(CallKey('c').with(clip).bytes(),
                    [rect = clip](DrawingContext& context) { context.setClip(rect); });
    m_layer.add(key.bytes(), std::move(call));
}

void OpenGLDrawingContextPrivate::flush() {
    if (m_layer.isEmpty())
        return;
    if (m_usedLayers == m_layers.size())
        m_layers.emplace_back();
    LayerTexture& texture = m_layers[m_usedLayers++];
    const double place[]{double(pixels.width()), double(pixels.height()), double(ratio)};
    const QByteArray key = CallKey('s').with(place, 3).bytes() + m_layer.key();
    if (texture.name == 0)
        texture.name = newTexture();
    m_gl.glBindTexture(GL_TEXTURE_2D, texture.name);
    if (texture.key != key) {
        const QImage image = m_layer.toImage(size, pixels, ratio)
                                 .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        m_gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width(), image.height(), 0, GL_RGBA,
                          GL_UNSIGNED_BYTE, image.constBits());
        texture.key = key;
    }
    m_layer.clear();
    const QRect all(QPoint(), pixels);
    prepareRectangle(GlPrograms::Picture, all);
    // The clip is in the picture.
    m_gl.glScissor(0, 0, pixels.width(), pixels.height());
    m_gl.glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void OpenGLDrawingContextPrivate::light(const QRect& target, const IntensityGrid& grid,
                                        const ToneCurve& tone, const QColor& color) {
    flush();
    if (!scissor(target))
        return;
    m_gl.glBindTexture(GL_TEXTURE_2D, textureOf(grid));
    prepareRectangle(GlPrograms::Light, target);
    const bool isLinear = tone.kind == ToneCurve::Linear;
    const double gain =
        std::exp2(std::isnan(tone.brightness) ? 0 : std::clamp(tone.brightness, -16.0, 16.0));
    const double scale = isLinear ? 1.0 / 8 : 1 / std::log2(1 + 16 * gain);
    const auto alpha = float(color.alphaF());
    m_gl.glUniform4f(m_programs->uniform(GlPrograms::Light, "full"), float(color.redF()) * alpha,
                     float(color.greenF()) * alpha, float(color.blueF()) * alpha, alpha);
    m_gl.glUniform4f(m_programs->uniform(GlPrograms::Light, "tone"), float(gain), float(scale),
                     tone.least > 0 ? float(tone.least) : 0.0F, isLinear ? 1.0F : 0.0F);
    m_gl.glBlendFunc(GL_ONE, GL_ONE);
    m_gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

void OpenGLDrawingContextPrivate::cloud(const QRect& viewport, const QMatrix4x4& view,
                                        const CloudPoint* points, int count) {
    flush();
    if (!scissor(viewport))
        return;
    const auto attribute = [](std::size_t offset) { return reinterpret_cast<const void*>(offset); };
    m_gl.glUseProgram(m_programs->program(GlPrograms::Cloud));
    m_gl.glUniformMatrix4fv(m_programs->uniform(GlPrograms::Cloud, "view"), 1, GL_FALSE,
                            view.constData());
    m_gl.glUniform2f(m_programs->uniform(GlPrograms::Cloud, "radii"), float(ratio),
                     LargestPointRadius);
    m_gl.glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    m_gl.glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(std::size_t(count) * sizeof(CloudPoint)), points,
                      GL_STREAM_DRAW);
    m_gl.glEnableVertexAttribArray(0);
    m_gl.glEnableVertexAttribArray(1);
    m_gl.glVertexAttribPointer(0, 4, GL_FLOAT, GL_FALSE, sizeof(CloudPoint), attribute(0));
    m_gl.glVertexAttribIPointer(1, 1, GL_UNSIGNED_INT, sizeof(CloudPoint),
                                attribute(offsetof(CloudPoint, color)));
    const int lower = pixels.height() - viewport.top() - viewport.height();
    m_gl.glViewport(viewport.left(), lower, viewport.width(), viewport.height());
    m_gl.glUniform4f(m_programs->uniform(GlPrograms::Cloud, "viewport"), float(viewport.left()),
                     float(lower), float(viewport.width()), float(viewport.height()));
    m_gl.glEnable(GL_DEPTH_TEST);
    m_gl.glDepthMask(GL_TRUE);
    m_gl.glDepthFunc(GL_LESS);
    m_gl.glClear(GL_DEPTH_BUFFER_BIT);
    m_gl.glDisable(GL_BLEND);
    m_gl.glDrawArrays(GL_POINTS, 0, count);
    m_gl.glEnable(GL_BLEND);
    m_gl.glDisable(GL_DEPTH_TEST);
    m_gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_gl.glDisableVertexAttribArray(0);
    m_gl.glDisableVertexAttribArray(1);
    m_gl.glViewport(0, 0, pixels.width(), pixels.height());
}

// Edges lie between pixels, so this is what a painter would do.
void OpenGLDrawingContextPrivate::clear(const QRect& rect, const QColor& color) {
    if (!scissor(rect))
        return;
    m_gl.glClearColor(GLfloat(color.redF()), GLfloat(color.greenF()), GLfloat(color.blueF()), 1);
    m_gl.glClear(GL_COLOR_BUFFER_BIT);
}

QRect OpenGLDrawingContextPrivate::onDevice(const QRectF& rect) const {
    const QRectF aligned = rectOnPixels(rect, ratio);
    return {(aligned.topLeft() * ratio).toPoint(), (aligned.size() * ratio).toSize()};
}

void OpenGLDrawingContextPrivate::freeUnused() {
    for (; m_layers.size() > m_usedLayers; m_layers.pop_back())
        m_gl.glDeleteTextures(1, &m_layers.back().name);
    for (; m_grids.size() > m_usedGrids; m_grids.pop_back())
        m_gl.glDeleteTextures(1, &m_grids.back().name);
}

GLuint OpenGLDrawingContextPrivate::newTexture() {
    GLuint name = 0;
    m_gl.glGenTextures(1, &name);
    m_gl.glBindTexture(GL_TEXTURE_2D, name);
    for (const int filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        m_gl.glTexParameteri(GL_TEXTURE_2D, GLenum(filter), GL_NEAREST);
    for (const int edge : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        m_gl.glTexParameteri(GL_TEXTURE_2D, GLenum(edge), GL_CLAMP_TO_EDGE);
    return name;
}

void OpenGLDrawingContextPrivate::prepareRectangle(GlPrograms::Program program,
                                                   const QRect& target) {
    const auto across = [this](int x) { return float(2.0 * x / pixels.width() - 1); };
    const auto down = [this](int y) { return float(1 - 2.0 * y / pixels.height()); };
    m_gl.glUseProgram(m_programs->program(program));
    m_gl.glUniform4f(m_programs->uniform(program, "corners"), across(target.left()),
                     down(target.top()), across(target.left() + target.width()),
                     down(target.top() + target.height()));
}

bool OpenGLDrawingContextPrivate::scissor(const QRect& within) {
    QRect left = within.intersected(QRect(QPoint(), pixels));
    if (!clip.isEmpty())
        left = left.intersected(onDevice(clip));
    m_gl.glScissor(left.x(), pixels.height() - left.y() - left.height(), std::max(left.width(), 0),
                   std::max(left.height(), 0));
    return !left.isEmpty();
}

GLuint OpenGLDrawingContextPrivate::textureOf(const IntensityGrid& grid) {
    if (m_usedGrids == m_grids.size())
        m_grids.emplace_back();
    GridTexture& texture = m_grids[m_usedGrids++];
    if (texture.name == 0)
        texture.name = newTexture();
    if (!texture.grid.isSameAs(grid)) {
        m_gl.glBindTexture(GL_TEXTURE_2D, texture.name);
        m_gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, grid.width(), grid.height(), 0, GL_RED,
                          GL_FLOAT, grid.row(0));
        texture.grid = grid;
    }
    return texture.name;
}

} // namespace Kestrel::UI
