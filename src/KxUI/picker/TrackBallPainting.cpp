#include <KxUI/picker/TrackBall_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double DisabledOpacity = 0.4;
constexpr double Outline = 1.5;

// A triangle at `tip` that points where `way`, of length 1, does.
QPolygonF arrow(const QPointF& tip, const QPointF& way, double length) {
    const QPointF across(-way.y() * length * 0.6, way.x() * length * 0.6);
    const QPointF base = tip - way * length;
    return QPolygonF({tip, base + across, base - across});
}

// Light within dark, so that it is seen on every colour.
void drawOutlined(QPainter& painter, const QPainterPath& shape, const QColor& fill) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0, 0, 0, 200), 2.0 * Outline + 1.0, Qt::SolidLine, Qt::SquareCap,
                        Qt::MiterJoin));
    painter.drawPath(shape);
    painter.setBrush(fill);
    painter.setPen(QPen(Qt::white, Outline, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawPath(shape);
}

// By angles clockwise from the top.
void drawArc(QPainter& painter, const TrackBallGeometry& places, double from, double to) {
    const double radius = places.ringMiddle();
    const QRectF box(places.centre.x() - radius, places.centre.y() - radius, 2.0 * radius,
                     2.0 * radius);
    constexpr double Sixteenths = 16.0 * 180.0 / M_PI;
    painter.drawArc(box, qRound((M_PI / 2.0 - from) * Sixteenths),
                    qRound((from - to) * Sixteenths));
}

} // namespace

void TrackBallPrivate::paint(QPainter& painter) {
    const TrackBallGeometry places = geometry();
    if (!places.title.isEmpty())
        paintTitle(painter, places);
    if (!places.isUsable())
        return;
    const TrackBallColors colors = TrackBallColors::of(q->palette());
    const double ratio = painter.device()->devicePixelRatioF();
    painter.save();
    if (!q->isEnabled())
        painter.setOpacity(DisabledOpacity);
    painter.drawImage(QPointF(), m_pictures.ball(places, rotation, q->size(), ratio, colors));
    painter.setRenderHint(QPainter::Antialiasing);
    paintMaster(painter, places, colors);
    paintBalance(painter, places, colors);
    painter.restore();
    if (q->hasFocus())
        paintFocus(painter, colors);
}

void TrackBallPrivate::paintTitle(QPainter& painter, const TrackBallGeometry& places) {
    const QFontMetricsF metrics(q->font());
    painter.setPen(q->palette().color(QPalette::WindowText));
    painter.drawText(places.title, Qt::AlignHCenter | Qt::AlignTop,
                     metrics.elidedText(title, Qt::ElideRight, places.title.width()));
}

void TrackBallPrivate::paintMaster(QPainter& painter, const TrackBallGeometry& places,
                                   const TrackBallColors& colors) {
    const double steps = scale().stepsTo(value.pose);
    const double angle = TrackBallGeometry::angleOf(steps);
    const double width = places.ringOuter - places.ringInner;
    painter.setPen(QPen(colors.mark, width - 3.0, Qt::SolidLine, Qt::FlatCap));
    if (angle != 0.0)
        drawArc(painter, places, std::min(angle, 0.0), std::max(angle, 0.0));
    const bool isNearNeutral = std::fabs(angle) * places.ringMiddle() < 5.0;
    if (!isNearNeutral) {
        painter.setPen(QPen(colors.text, 1.5, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(places.onRing(0.0, places.ringInner),
                         places.onRing(0.0, places.ringOuter));
    }
    const bool isActive = m_hovered == TrackBallGeometry::Ring || isDragged(TrackBallDrag::Turn) ||
                          isDragged(TrackBallDrag::Slide);
    const double handle = isActive ? 4.0 : 3.0;
    const QLineF line(places.onRing(angle, places.ringInner + 1.0),
                      places.onRing(angle, places.ringOuter - 1.0));
    painter.setPen(QPen(colors.window, handle + 2.0, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(line);
    painter.setPen(QPen(colors.text, handle, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(line);
    if (std::fabs(steps) > TrackBallGeometry::RingSpan) {
        const double side = steps > 0.0 ? 1.0 : -1.0;
        const QPointF way(std::cos(angle) * side, std::sin(angle) * side);
        const QPointF from = places.onRing(angle, places.ringMiddle());
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.text);
        painter.drawPolygon(arrow(from + way * (width * 0.5 + 4.0), way, width * 0.5));
    }
}

void TrackBallPrivate::paintBalance(QPainter& painter, const TrackBallGeometry& places,
                                    const TrackBallColors& colors) {
    const QPointF& balance = value.pose.balance;
    const QPointF at = places.markerOf(balance);
    const QColor tint = trackBallTint(balance, rotation, colors);
    const QLineF way(places.centre, at);
    const double radius = TrackBallGeometry::MarkerRadius;
    if (way.length() > radius) {
        const QLineF visible(places.centre, way.pointAt(1.0 - radius / way.length()));
        painter.setPen(QPen(QColor(0, 0, 0, 120), 3.0, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(visible);
        painter.setPen(QPen(tint, 1.5, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(visible);
    }
    if (TrackBallGeometry::isBeyond(balance)) {
        const QPointF out = (at - places.centre) / way.length();
        QPainterPath path;
        path.addPolygon(arrow(at + out * (radius + 9.0), out, 7.0));
        path.closeSubpath();
        drawOutlined(painter, path, Qt::white);
    }
    QPainterPath marker;
    const bool isActive = m_hovered == TrackBallGeometry::Ball || isDragged(TrackBallDrag::Roll);
    const double size = isActive ? radius + 1.0 : radius;
    if (mode == TrackBall::Gain && value.pose.isOffset)
        marker.addPolygon(
            QPolygonF({at + QPointF(size, 0.0), at + QPointF(0.0, size), at - QPointF(size, 0.0),
                       at - QPointF(0.0, size), at + QPointF(size, 0.0)}));
    else
        marker.addEllipse(at, size, size);
    drawOutlined(painter, marker, tint);
}

void TrackBallPrivate::paintFocus(QPainter& painter, const TrackBallColors& colors) {
    constexpr double Width = 1.5;
    constexpr double Inset = Width / 2.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.mark, Width));
    painter.drawRoundedRect(QRectF(q->rect()).adjusted(Inset, Inset, -Inset, -Inset), 3.0, 3.0);
}

QString TrackBallPrivate::number(double number) const {
    constexpr int Decimals = 3;
    const QString text = q->locale().toString(number, 'f', Decimals);
    return mode == TrackBall::Offset && number >= 0.0 ? QLatin1Char('+') + text : text;
}

QString TrackBallPrivate::valueText() const {
    return TrackBall::tr("Red %1, green %2, blue %3")
        .arg(number(static_cast<double>(value.factors.x())),
             number(static_cast<double>(value.factors.y())),
             number(static_cast<double>(value.factors.z())));
}

QString TrackBallPrivate::masterText() const {
    return number(value.pose.master);
}

} // namespace Kestrel::UI
