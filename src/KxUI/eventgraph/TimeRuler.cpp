#include <KxUI/eventgraph/TimeRuler_p.h>

#include <KxUI/eventgraph/EventGraphGeometry_p.h>
#include <KxUI/eventgraph/EventGraphPainting_p.h>
#include <KxUI/eventgraph/EventGraphView.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int narrowestTick = 90;

// A tick's time in the unit of all ticks: seconds once they are that far apart or that late.
QString tickText(double time, double step) {
    if (time == 0.0)
        return QStringLiteral("0");
    if (step >= 1000.0 || time >= 10000.0) {
        const int decimals = std::clamp(static_cast<int>(std::ceil(3.0 - std::log10(step))), 0, 3);
        return QString::number(time / 1000.0, 'f', decimals) + QStringLiteral(" s");
    }
    return QString::number(time, 'f', 0) + QStringLiteral(" ms");
}

} // namespace

TimeRuler::TimeRuler(EventGraphView& view, QWidget* parent)
    : QWidget(parent)
    , m_view(view) {
    connect(&view, &EventGraphView::layoutChanged, this, [this] { update(); });
    connect(&view, &EventGraphView::selectionChanged, this, [this] { update(); });
}

QSize TimeRuler::sizeHint() const {
    return {nameColumnWidth, fontMetrics().height() + 10};
}

void TimeRuler::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ViewColors colors(palette());
    painter.fillRect(rect(), colors.column);
    painter.fillRect(0, height() - 1, width(), 1, colors.line);
    if (!m_view.paused())
        return;
    paintRange(painter, colors);
    paintTicks(painter, colors);
    paintSelected(painter, colors);
}

// The view's own coordinates, seen through what it is scrolled by.
int TimeRuler::scrolled() const {
    return -m_view.x();
}

void TimeRuler::paintRange(QPainter& painter, const ViewColors& colors) const {
    if (m_view.selectionStart() == m_view.selectionEnd())
        return;
    const TimeScale scale{m_view.horizontalScale()};
    const int from = scale.x(m_view.selectionStart()) - scrolled();
    const int to = scale.x(m_view.selectionEnd()) - scrolled();
    QColor fill = colors.selection;
    fill.setAlpha(110);
    painter.fillRect(
        QRect(QPoint(std::max(from, -2), 0), QPoint(std::min(to, width() + 2), height() - 2)),
        fill);
}

void TimeRuler::paintTicks(QPainter& painter, const ViewColors& colors) const {
    const TimeScale scale{m_view.horizontalScale()};
    const double step = tickStep(m_view.horizontalScale(), narrowestTick);
    const int left = std::max(scrolled(), nameColumnWidth);
    const int right = std::min(scrolled() + width(), m_view.width());
    painter.setPen(colors.faintText);
    for (double tick = std::floor(std::max(scale.time(left), 0.0) / step);; ++tick) {
        const double time = tick * step;
        const double x = std::trunc(time * double(m_view.horizontalScale())) + nameColumnWidth;
        if (x >= right)
            break;
        const int at = static_cast<int>(x) - scrolled();
        painter.fillRect(at, height() - 7, 1, 6, colors.faintText);
        painter.drawText(QRect(at + 4, 0, narrowestTick, height() - 4),
                         Qt::AlignLeft | Qt::AlignVCenter, tickText(time, step));
    }
}

// How long the selection is, above the names.
void TimeRuler::paintSelected(QPainter& painter, const ViewColors& colors) const {
    const int length = timeDifference(m_view.selectionEnd(), m_view.selectionStart());
    if (length == 0)
        return;
    const QString text = tr("Selected: %1").arg(durationText(length));
    const QRect chip(0, 0, fontMetrics().horizontalAdvance(text) + 20, height() - 1);
    painter.fillRect(chip, colors.column);
    painter.setPen(colors.text);
    painter.drawText(chip.adjusted(8, 0, 0, -3), Qt::AlignLeft | Qt::AlignVCenter, text);
}

EventGraphScrollArea::EventGraphScrollArea(EventGraphView* view)
    : m_ruler(nullptr) {
    setWidget(view);
    setBackgroundRole(QPalette::Base);
    m_ruler = new TimeRuler(*view, this);
    setViewportMargins(0, m_ruler->sizeHint().height(), 0, 0);
}

void EventGraphScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    placeRuler();
}

void EventGraphScrollArea::scrollContentsBy(int dx, int dy) {
    QScrollArea::scrollContentsBy(dx, dy);
    if (dx != 0) {
        // The names that go with the view would be moved along.
        widget()->update();
        m_ruler->update();
    }
}

void EventGraphScrollArea::placeRuler() {
    const QRect below = viewport()->geometry();
    const int height = m_ruler->sizeHint().height();
    m_ruler->setGeometry(below.x(), below.y() - height, below.width(), height);
}

} // namespace Kestrel::UI
