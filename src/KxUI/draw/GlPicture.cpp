#include <KxUI/draw/GlPicture_p.h>

#include <KxUI/draw/OpenGLDrawingContext.h>

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QSurfaceFormat>

#include <algorithm>
#include <optional>

namespace Kestrel::UI {

// Remembers who was current, which may be a context of the host.
class CurrentContext {
public:
    CurrentContext(QOpenGLContext& context, QSurface* surface)
        : m_context(context)
        , m_former(QOpenGLContext::currentContext())
        , m_formerSurface(m_former ? m_former->surface() : nullptr)
        , m_isCurrent(context.makeCurrent(surface)) {}
    ~CurrentContext() {
        if (m_former)
            m_former->makeCurrent(m_formerSurface);
        else if (m_isCurrent)
            m_context.doneCurrent();
    }
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;

    explicit operator bool() const { return m_isCurrent; }

private:
    QOpenGLContext& m_context;
    QOpenGLContext* const m_former;
    QSurface* const m_formerSurface;
    const bool m_isCurrent;
};

class GlPictureData {
public:
    GlPictureData();
    ~GlPictureData();
    GlPictureData(const GlPictureData&) = delete;
    GlPictureData& operator=(const GlPictureData&) = delete;

    QImage take(const QSizeF& size, qreal ratio, const std::function<void(DrawingContext&)>& draw);
    QString renderer();

    QString error;

private:
    static QSurfaceFormat format(bool isEmbedded);
    bool resize(QOpenGLExtraFunctions& gl, const QSize& pixels);

    QOpenGLContext m_context;
    QOffscreenSurface m_surface;
    std::optional<OpenGLDrawingContext> m_drawing;
    QSize m_pixels;
    GLuint m_frame = 0;
    GLuint m_color = 0;
    GLuint m_depth = 0;
};

QSurfaceFormat GlPictureData::format(bool isEmbedded) {
    QSurfaceFormat format;
    format.setRenderableType(isEmbedded ? QSurfaceFormat::OpenGLES : QSurfaceFormat::OpenGL);
    format.setVersion(3, isEmbedded ? 0 : 3);
    format.setProfile(isEmbedded ? QSurfaceFormat::NoProfile : QSurfaceFormat::CoreProfile);
    return format;
}

GlPictureData::GlPictureData() {
    const bool prefersEmbedded = QOpenGLContext::openGLModuleType() == QOpenGLContext::LibGLES;
    for (const bool isEmbedded : {prefersEmbedded, !prefersEmbedded}) {
        m_context.setFormat(format(isEmbedded));
        if (m_context.create())
            break;
    }
    if (!m_context.isValid()) {
        error = QStringLiteral("no OpenGL context can be made");
        return;
    }
    m_surface.setFormat(m_context.format());
    m_surface.create();
    const CurrentContext current(m_context, &m_surface);
    if (!current) {
        error = QStringLiteral("the OpenGL context can not be used");
        return;
    }
    m_drawing.emplace();
    error = m_drawing->error();
}

GlPictureData::~GlPictureData() {
    if (!m_drawing)
        return;
    const CurrentContext current(m_context, &m_surface);
    if (!current)
        return;
    m_drawing.reset();
    QOpenGLExtraFunctions* const gl = m_context.extraFunctions();
    gl->glDeleteFramebuffers(1, &m_frame);
    gl->glDeleteRenderbuffers(1, &m_color);
    gl->glDeleteRenderbuffers(1, &m_depth);
}

bool GlPictureData::resize(QOpenGLExtraFunctions& gl, const QSize& pixels) {
    if (m_frame == 0) {
        gl.glGenFramebuffers(1, &m_frame);
        gl.glGenRenderbuffers(1, &m_color);
        gl.glGenRenderbuffers(1, &m_depth);
    }
    gl.glBindFramebuffer(GL_FRAMEBUFFER, m_frame);
    if (pixels != m_pixels) {
        m_pixels = pixels;
        const auto attach = [&](GLuint buffer, GLenum layout, GLenum place) {
            gl.glBindRenderbuffer(GL_RENDERBUFFER, buffer);
            gl.glRenderbufferStorage(GL_RENDERBUFFER, layout, pixels.width(), pixels.height());
            gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
        };
        attach(m_color, GL_RGBA8, GL_COLOR_ATTACHMENT0);
        attach(m_depth, GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    }
    return gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

QImage GlPictureData::take(const QSizeF& size, qreal ratio,
                           const std::function<void(DrawingContext&)>& draw) {
    const CurrentContext current(m_context, &m_surface);
    if (!current) {
        error = QStringLiteral("the OpenGL context was lost");
        return {};
    }
    QOpenGLExtraFunctions& gl = *m_context.extraFunctions();
    const QSize pixels = (size * ratio).toSize();
    if (pixels.isEmpty() || !resize(gl, pixels) || !m_drawing->begin(size, ratio)) {
        error = QStringLiteral("a picture of %1 x %2 can not be drawn by OpenGL")
                    .arg(pixels.width())
                    .arg(pixels.height());
        return {};
    }
    m_drawing->fill(QRectF(QPointF(), size), Qt::black);
    draw(*m_drawing);
    m_drawing->end();
    QImage image(pixels, QImage::Format_RGBX8888);
    gl.glPixelStorei(GL_PACK_ALIGNMENT, 4);
    gl.glReadPixels(0, 0, pixels.width(), pixels.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    gl.glBindFramebuffer(GL_FRAMEBUFFER, m_context.defaultFramebufferObject());
    image = image.mirrored();
    image.setDevicePixelRatio(ratio);
    return image;
}

QString GlPictureData::renderer() {
    const CurrentContext current(m_context, &m_surface);
    if (!current)
        return {};
    return QString::fromLatin1(
        reinterpret_cast<const char*>(m_context.functions()->glGetString(GL_RENDERER)));
}

GlPicture::GlPicture() = default;
GlPicture::~GlPicture() = default;

QImage GlPicture::take(const QSizeF& size, qreal ratio,
                       const std::function<void(DrawingContext&)>& draw) {
    if (!d)
        d = std::make_unique<GlPictureData>();
    QImage image = d->error.isEmpty() ? d->take(size, ratio, draw) : QImage();
    m_error = d->error;
    if (image.isNull())
        d.reset(); // the next one may find another screen
    return image;
}

QString GlPicture::error() const {
    return m_error;
}

bool GlPicture::hasGraphicsProcessor() {
    // It does not come or go while a program runs.
    static const bool found = [] {
        GlPictureData probe;
        return probe.error.isEmpty() && !isSoftwareRenderer(probe.renderer());
    }();
    return found;
}

bool isSoftwareRenderer(const QString& name) {
    for (const char* known :
         {"llvmpipe", "softpipe", "swrast", "swiftshader", "software", "gdi generic"})
        if (name.contains(QLatin1String(known), Qt::CaseInsensitive))
            return true;
    return name.isEmpty();
}

} // namespace Kestrel::UI
