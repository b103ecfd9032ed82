#include <KxUI/draw/DrawingSurface_p.h>

#include <KxUI/draw/PainterDrawingContext.h>

#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace Kestrel::UI {

DrawingSurface::DrawingSurface(QWidget* widget, std::function<void()> changed)
    : m_widget(widget)
    , m_changed(std::move(changed)) {}

void DrawingSurface::setDrawing(Drawing drawing) {
    m_wanted = drawing;
    m_problem.clear();
    m_widget->update();
}

bool DrawingSurface::usesOpenGL() const {
    if (!m_problem.isEmpty() || m_wanted == Drawing::Painter)
        return false;
    return m_wanted == Drawing::OpenGL || GlPicture::hasGraphicsProcessor();
}

void DrawingSurface::paint(const std::function<void(DrawingContext&)>& draw) {
    QPainter painter(m_widget);
    const QSizeF size = m_widget->size();
    const qreal ratio = m_widget->devicePixelRatioF();
    if (usesOpenGL()) {
        const QImage image = m_picture.take(size, ratio, draw);
        if (!image.isNull()) {
            painter.drawImage(QPointF(), image);
            return;
        }
        m_problem = m_picture.error();
        if (m_changed)
            QTimer::singleShot(0, m_widget, m_changed);
    }
    PainterDrawingContext context(painter, size, ratio);
    draw(context);
}

} // namespace Kestrel::UI
