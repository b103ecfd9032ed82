#include <KxUI/time/TimeSliderStrip_p.h>

#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {

void TimeSliderStrip::reset(int width, qreal scale) {
    m_width = std::max(width, 0);
    m_scale = scale;
    const int columns = qRound(m_width * scale);
    if (m_row.width() != columns)
        m_row = QImage(columns, 1, QImage::Format_ARGB32_Premultiplied);
    m_row.fill(Qt::transparent);
}

void TimeSliderStrip::fill(int x, int end, const QColor& color) {
    const auto column = [this](int pixel) {
        return std::min(qRound(std::clamp(pixel, 0, m_width) * m_scale), m_row.width());
    };
    const int from = column(x);
    const int to = column(end);
    if (from >= to)
        return;
    auto* row = reinterpret_cast<QRgb*>(m_row.scanLine(0));
    std::fill(row + from, row + to, qPremultiply(color.rgba()));
}

void TimeSliderStrip::draw(QPainter& painter, int x, int end, int y, int bottom) const {
    const int from = std::max(x, 0);
    const int to = std::min(end, m_row.width());
    for (int row = y; from < to && row < bottom; ++row)
        painter.drawImage(QPoint(from, row), m_row, QRect(from, 0, to - from, 1));
}

} // namespace Kestrel::UI
