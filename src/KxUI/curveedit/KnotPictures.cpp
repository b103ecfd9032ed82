#include <KxUI/curveedit/CurvePictures_p.h>

#include <QPainter>

#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Outline = 1.5;
constexpr double Larger = 1.0; // than a plain one
constexpr int Phases = 4;      // parts of a pixel, so that knots do not jump from one to the next

} // namespace

void KnotPictures::prepare(double ratio, const QColor& ink, const QColor& base) {
    if (ratio == m_ratio && ink.rgb() == m_ink && base.rgb() == m_base)
        return;
    m_ratio = ratio;
    m_ink = ink.rgb();
    m_base = base.rgb();
    m_pictures.clear();
}

KnotPictures::Picture KnotPictures::make(KnotLook look, const QColor& color,
                                         const QPointF& phase) const {
    const double radius = (look == KnotLook::Plain ? Radius : Radius + Larger) * m_ratio;
    const double width = Outline * m_ratio;
    const int middle = int(std::ceil(radius + width)) + 1;
    Picture picture{QImage(2 * middle, 2 * middle, QImage::Format_ARGB32_Premultiplied),
                    QPoint(middle, middle)};
    picture.image.fill(Qt::transparent);
    QPainter painter(&picture.image);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool selected = look == KnotLook::Selected;
    painter.setPen(QPen(selected ? QColor(m_ink) : color, width));
    if (look == KnotLook::Gone)
        painter.setBrush(Qt::NoBrush);
    else
        painter.setBrush(selected ? color : QColor(m_base));
    painter.drawEllipse(QPointF(middle, middle) + phase, radius, radius);
    return picture;
}

void KnotPictures::draw(QPainter& painter, const QPointF& at, KnotLook look, const QColor& color) {
    const int x = int(std::floor(at.x() * Phases));
    const int y = int(std::floor(at.y() * Phases));
    const int phaseX = x & (Phases - 1);
    const int phaseY = y & (Phases - 1);
    const Key key(look, color.rgb(), phaseX, phaseY);
    auto found = m_pictures.find(key);
    if (found == m_pictures.end()) {
        const QPointF phase((phaseX + 0.5) / Phases, (phaseY + 0.5) / Phases);
        found = m_pictures.emplace(key, make(look, color, phase)).first;
    }
    const QPoint pixel((x - phaseX) / Phases, (y - phaseY) / Phases);
    painter.drawImage(pixel - found->second.middle, found->second.image);
}

} // namespace Kestrel::UI
