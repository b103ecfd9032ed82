#include <KxUI/charts/ChartAxis_p.h>
#include <KxUI/charts/LineChart_p.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>

// What the mouse and the keys do to the ranges of a line chart.

namespace Kestrel::UI {
namespace {

constexpr double ZoomOfNotch = 1.25;
constexpr double PageOfPlot = 0.5;

} // namespace

void LineChartPrivate::setFollowing(bool follows) {
    if (isFollowing == follows)
        return;
    isFollowing = follows;
    const QPointer<LineChart> alive(chart);
    if (follows)
        xAxis->setAutoRange(false);
    if (!alive)
        return;
    dataChanged();
    Q_EMIT chart->followingChanged(follows);
}

void LineChartPrivate::showX(double lower, double upper) {
    const QPointer<LineChart> alive(chart);
    setFollowing(false);
    if (alive)
        xAxis->setRange(lower, upper);
}

void LineChartPrivate::zoom(double pixel, double factor) {
    const AxisScale scale = m_layout.x.zoomed(pixel, factor);
    // Nearer than the digits of a double there is nothing to see.
    const double least = 1e-12 * std::max(std::abs(scale.lower), std::abs(scale.upper));
    if (factor < 1 || scale.upper - scale.lower > least)
        showX(scale.lower, scale.upper);
}

void LineChartPrivate::pan(double pixels, double down) {
    const QPointer<LineChart> alive(chart);
    const AxisScale across =
        m_layout.x.between(m_layout.plot.left() - pixels, m_layout.plot.right() - pixels);
    showX(across.lower, across.upper);
    // Axes that find their range by themselves have nothing above and below.
    for (ChartAxis* axis : {yAxis, rightAxis}) {
        if (!alive || axis->isAutoRange() || down == 0)
            continue;
        const AxisScale& scale = axis == yAxis ? m_layout.y : m_layout.yRight;
        const AxisScale other =
            scale.between(m_layout.plot.bottom() - down, m_layout.plot.top() - down);
        axis->setRange(other.lower, other.upper);
    }
}

void LineChartPrivate::showAll() {
    const QPointer<LineChart> alive(chart);
    setFollowing(false);
    for (ChartAxis* axis : {xAxis, yAxis, rightAxis})
        if (alive)
            axis->setAutoRange(true);
    if (alive)
        refresh();
}

bool LineChartPrivate::key(QKeyEvent* event) {
    const double middle = hover ? hover->x() : m_layout.plot.center().x();
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(middle, ZoomOfNotch);
        return true;
    case Qt::Key_Minus:
        zoom(middle, 1 / ZoomOfNotch);
        return true;
    case Qt::Key_PageUp:
        pan(m_layout.plot.width() * PageOfPlot, 0);
        return true;
    case Qt::Key_PageDown:
        pan(-m_layout.plot.width() * PageOfPlot, 0);
        return true;
    case Qt::Key_Home:
        showAll();
        return true;
    default:
        return false;
    }
}

bool LineChartPrivate::wheel(QWheelEvent* event) {
    // Shift turns the wheel on some systems.
    const QPoint turned = event->angleDelta();
    const int notches = turned.y() != 0 ? turned.y() : turned.x();
    if (notches == 0)
        return false;
    const double factor = std::pow(ZoomOfNotch, notches / 120.0);
    if (!(event->modifiers() & Qt::ShiftModifier)) {
        zoom(event->position().x(), factor);
        return true;
    }
    const QPointer<LineChart> alive(chart);
    for (ChartAxis* axis : {yAxis, rightAxis}) {
        if (!alive)
            return true;
        const AxisScale& scale = axis == yAxis ? m_layout.y : m_layout.yRight;
        if (scale.length == 1)
            continue; // not shown
        const double place = m_layout.plot.bottom() - event->position().y();
        const AxisScale other = scale.zoomed(scale.origin - place, factor);
        axis->setRange(other.lower, other.upper);
    }
    return true;
}

bool LineChartPrivate::press(QMouseEvent* event) {
    const QPointF place(event->pos());
    if (!m_layout.plot.contains(place) ||
        (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton))
        return false;
    const bool isTaking =
        event->button() == Qt::LeftButton && event->modifiers() & Qt::ShiftModifier;
    m_drag = isTaking ? Drag::Taking : Drag::Pressed;
    m_dragStart = place;
    m_dragLast = place;
    return true;
}

bool LineChartPrivate::drag(QMouseEvent* event) {
    const QPointF place(event->pos());
    const QPointF way = place - m_dragStart;
    if (m_drag == Drag::Pressed && way.manhattanLength() >= QApplication::startDragDistance()) {
        m_drag = Drag::Panning;
        setHover({});
    }
    if (m_drag == Drag::Panning) {
        const QPointF step = place - m_dragLast;
        m_dragLast = place;
        arrange(plotArea(), q->devicePixelRatioF());
        pan(step.x(), step.y()); // a host that hears of it may delete the chart
        return true;
    }
    if (m_drag == Drag::Taking) {
        m_dragLast = place;
        q->update();
    }
    return m_drag != Drag::None;
}

bool LineChartPrivate::drop(QMouseEvent*) {
    const Drag was = m_drag;
    m_drag = Drag::None;
    if (was == Drag::Taking && std::abs(m_dragLast.x() - m_dragStart.x()) > 2) {
        const AxisScale part = m_layout.x.between(std::min(m_dragStart.x(), m_dragLast.x()),
                                                  std::max(m_dragStart.x(), m_dragLast.x()));
        showX(part.lower, part.upper);
    }
    return was == Drag::Panning || was == Drag::Taking;
}

} // namespace Kestrel::UI
