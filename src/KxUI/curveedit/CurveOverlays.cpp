#include <KxUI/curveedit/CurveOverlays_p.h>

#include <KxUI/curveedit/CurveGround_p.h>
#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/kit/ColorContrast_p.h>

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr double HandleRadius = 3.0;
constexpr double DotRadius = 3.0;
constexpr double GripSize = 7.0;
constexpr double HeadSize = 5.0;

QFont smaller(QFont font) {
    font.setPointSizeF(QFontInfo(font).pointSizeF() * 0.85);
    return font;
}

} // namespace

CurveOverlays::CurveOverlays(QPainter& painter, const CurveScene& scene, const QPalette& palette)
    : m_painter(painter)
    , m_scene(scene)
    , m_palette(palette)
    , m_ink(palette.color(QPalette::Text))
    , m_base(palette.color(QPalette::Base)) {}

QPen CurveOverlays::pen(const QColor& color, double width, Qt::PenStyle style) const {
    return QPen(color, width, style);
}

void CurveOverlays::paintHandles(int curve, const std::vector<int>& selected, const QColor& color) {
    const bool grabbed = m_scene.can(curve, CurveModel::HasSlopes);
    if (selected.size() > std::size_t(CurvePick::MostHandles))
        return;
    for (const int index : selected) {
        if (!grabbed) {
            m_painter.setPen(pen(faint(m_ink, 0.45), 1.0));
            m_painter.drawLine(CurvePick::slopeLineOf(m_scene, curve, index));
            continue;
        }
        const CurveModel::Knot knot = m_scene.model->knot(curve, index);
        const QPointF place = CurvePick::shownAt(m_scene, curve, {knot.x, knot.y});
        const CurveHandles handles = CurvePick::handlesOf(m_scene, curve, index);
        for (const std::optional<QPointF>& end : {handles.in, handles.out}) {
            if (!end)
                continue;
            m_painter.setPen(pen(faint(m_ink, 0.55), 1.0));
            m_painter.drawLine(place, *end);
            m_painter.setPen(pen(color, 1.5));
            m_painter.setBrush(m_base);
            m_painter.drawEllipse(*end, HandleRadius, HandleRadius);
        }
    }
}

void CurveOverlays::paintMarker(double x) {
    const QRectF& plot = m_scene.plot.rect();
    const double at = m_scene.plot.toX(x);
    if (!(at >= plot.left() - 1.0 && at <= plot.right() + 1.0))
        return;
    m_painter.setPen(pen(faint(m_ink, 0.6), 1.0, Qt::DashLine));
    m_painter.drawLine(QPointF(at, plot.top()), QPointF(at, plot.bottom()));
}

void CurveOverlays::paintPlayhead(double x) {
    const QRectF& plot = m_scene.plot.rect();
    const double at = m_scene.plot.toX(x);
    if (!(at >= plot.left() - 1.0 && at <= plot.right() + 1.0))
        return;
    const QColor color = visibleHighlight(m_palette, m_base);
    m_painter.setPen(pen(color, 1.5));
    m_painter.drawLine(QPointF(at, plot.top()), QPointF(at, plot.bottom()));
    const QPointF head[] = {{at - HeadSize, plot.top() - HeadSize},
                            {at + HeadSize, plot.top() - HeadSize},
                            {at, plot.top() + HeadSize / 2.0}};
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(color);
    m_painter.drawPolygon(head, 3);
}

void CurveOverlays::paintDot(double x, double y, const QColor& color) {
    m_painter.setPen(pen(m_base, 1.0));
    m_painter.setBrush(color);
    m_painter.drawEllipse(m_scene.plot.toWidget({x, y}), DotRadius, DotRadius);
}

void CurveOverlays::paintSnap(const QPolygonF& line, const QString& name) {
    const QRectF& plot = m_scene.plot.rect();
    m_painter.save();
    m_painter.setClipRect(plot.adjusted(-1.0, -1.0, 1.0, 1.0), Qt::IntersectClip);
    m_painter.setPen(pen(faint(m_ink, 0.7), 1.0, Qt::DotLine));
    m_painter.drawPolyline(line);
    m_painter.restore();
    if (name.isEmpty() || line.isEmpty())
        return;
    const QFontMetricsF metrics(m_painter.font());
    const QPointF end(std::min(line.last().x(), plot.right()), line.last().y());
    const bool upright = line.first().x() == line.last().x();
    const double left = upright ? end.x() + 3.0 : end.x() - metrics.horizontalAdvance(name) - 3.0;
    const double top = plot.top() + metrics.ascent();
    const QPointF at(left, upright ? top : std::max(top, end.y() - 3.0));
    m_painter.setPen(faint(m_ink, 0.8));
    m_painter.drawText(at, name);
}

void CurveOverlays::paintBand(const QRectF& band) {
    const QColor color = visibleHighlight(m_palette, m_base);
    m_painter.setPen(pen(color, 1.0));
    m_painter.setBrush(faint(color, 0.15));
    m_painter.drawRect(band.normalized());
}

void CurveOverlays::paintFrame(const QRectF& frame, const std::vector<QPointF>& grips) {
    m_painter.setPen(pen(faint(m_ink, 0.6), 1.0, Qt::DashLine));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawRect(frame);
    m_painter.setPen(pen(m_ink, 1.0));
    m_painter.setBrush(m_base);
    for (const QPointF& grip : grips)
        m_painter.drawRect(
            QRectF(grip.x() - GripSize / 2.0, grip.y() - GripSize / 2.0, GripSize, GripSize));
}

double CurveOverlays::widthOf(const std::vector<CurveWord>& words, const QFont& font) const {
    const QFontMetricsF metrics(smaller(font));
    double width = 0.0;
    for (const CurveWord& word : words)
        width += metrics.horizontalAdvance(word.text);
    return width;
}

void CurveOverlays::paintText(const std::vector<CurveWord>& words, const QFont& font, int line) {
    const QFont small = smaller(font);
    m_painter.setFont(small);
    const QFontMetricsF metrics(small);
    const double width = widthOf(words, font);
    const QRectF place = m_scene.plot.rect().adjusted(6.0, 4.0, -6.0, -4.0);
    const double height = metrics.height();
    const double bottom = place.bottom() - line * (height + 3.0);
    const QRectF box(place.right() - width, bottom - height, width, height);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(faint(m_base, 0.8));
    m_painter.drawRoundedRect(box.adjusted(-4.0, -1.0, 4.0, 1.0), 3.0, 3.0);
    double x = box.left();
    for (const CurveWord& word : words) {
        m_painter.setPen(word.color);
        m_painter.drawText(QPointF(x, box.top() + metrics.ascent()), word.text);
        x += metrics.horizontalAdvance(word.text);
    }
}

} // namespace Kestrel::UI
