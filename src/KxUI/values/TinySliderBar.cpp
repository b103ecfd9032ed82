#include <KxUI/values/TinySliderBar_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>

#include <QPainter>
#include <QPalette>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LineContrast = 3.0; // WCAG 2.1, 1.4.11

// Around the picture: smooth edges, and arrows, go a little beyond the pointer.
constexpr int PointerRoom = 12;

// A pointer that stands on its tip on the line, or a triangle that points beyond an end of it; x runs
// along the line.
QPolygonF pointerAt(double at, double middle, int beyond) {
    constexpr double Half = TinySliderBar::PointerSize / 2.0;
    if (beyond != 0)
        return QPolygonF({{at - beyond * Half, middle - Half},
                          {at + beyond * Half, middle},
                          {at - beyond * Half, middle + Half}});
    return QPolygonF({{at - Half, middle - Half},
                      {at + Half, middle - Half},
                      {at + Half, middle},
                      {at, middle + Half},
                      {at - Half, middle}});
}

} // namespace

const QImage& TinySliderPointer::image(const QColor& color, Qt::Orientation orientation, int beyond,
                                       double deviceRatio) {
    const bool isSame = color.rgba() == m_color && orientation == m_orientation &&
                        beyond == m_beyond && deviceRatio == m_ratio;
    if (isSame && !m_image.isNull())
        return m_image;
    m_color = color.rgba();
    m_orientation = orientation;
    m_beyond = beyond;
    m_ratio = deviceRatio;
    const int side = static_cast<int>(std::ceil(PointerRoom * deviceRatio));
    m_image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    m_image.setDevicePixelRatio(deviceRatio);
    m_image.fill(Qt::transparent);
    constexpr double Middle = PointerRoom / 2.0;
    QPolygonF shape = pointerAt(Middle, Middle, beyond);
    if (orientation != Qt::Horizontal) {
        for (QPointF& corner : shape)
            corner = corner.transposed();
    }
    QPainter painter(&m_image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawConvexPolygon(shape);
    return m_image;
}

void TinySliderBar::paint(QPainter& painter, const QPalette& palette,
                          TinySliderPointer& pointer) const {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor highlight = palette.color(QPalette::Highlight);
    const bool isVisible = palette.currentColorGroup() == QPalette::Disabled ||
                           contrastRatio(highlight, window) >= LineContrast;
    const QColor fill = isVisible ? highlight : text;
    const bool isHorizontal = orientation == Qt::Horizontal;
    const double start = isHorizontal ? area.left() : area.top();
    const double end = isHorizontal ? area.right() : area.bottom();
    const double middle = isHorizontal ? area.center().y() : area.center().x();
    // Whole device pixels: nothing is blurred, and filling them is several times cheaper.
    const double ratio = painter.device()->devicePixelRatioF();
    const double top = onPixels(middle - LineWidth / 2.0, ratio);
    const auto bar = [&](double a, double b, const QColor& color) {
        const double first = onPixels(a, ratio);
        const double length = onPixels(b, ratio) - first;
        painter.fillRect(isHorizontal ? QRectF(first, top, length, LineWidth)
                                      : QRectF(top, first, LineWidth, length),
                         color);
    };
    bar(start + Inset, end - Inset, mixed(window, text, 0.3));
    if (from != to)
        bar(std::min(from, to), std::max(from, to), fill);

    constexpr double Middle = PointerRoom / 2.0;
    const QPointF corner(onPixels(to - Middle, ratio), onPixels(middle - Middle, ratio));
    painter.drawImage(
        isHorizontal ? corner : corner.transposed(),
        pointer.image(isActive ? mixed(text, fill, 0.5) : text, orientation, beyond, ratio));
    if (hasFocus)
        paintFrame(painter, fill, ratio);
}

void TinySliderBar::paintFrame(QPainter& painter, const QColor& color, double ratio) const {
    const double width = std::max(1.0, std::round(ratio)) / ratio;
    const QRectF frame = rectOnPixels(area, ratio);
    const QPointF inner = frame.bottomRight() - QPointF(width, width);
    painter.fillRect(QRectF(frame.left(), frame.top(), frame.width(), width), color);
    painter.fillRect(QRectF(frame.left(), inner.y(), frame.width(), width), color);
    painter.fillRect(QRectF(frame.left(), frame.top(), width, frame.height()), color);
    painter.fillRect(QRectF(inner.x(), frame.top(), width, frame.height()), color);
}

} // namespace Kestrel::UI
