#include <KxUI/kit/SnappableWindow.h>

#include <KxUI/kit/WindowPlacement.h>

#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace Kestrel::UI {

namespace {

QVector<SnappableWindow*>& allSnappable() {
    static QVector<SnappableWindow*> windows;
    return windows;
}

/** The smallest of the offered moves along one axis. */
class NearestMove {
public:
    explicit NearestMove(int distance)
        : m_limit(distance) {}

    void offer(int from, int to) {
        const int move = to - from;
        if (std::abs(move) <= m_limit && (!m_found || std::abs(move) < std::abs(m_move))) {
            m_move = move;
            m_found = true;
        }
    }
    int move() const { return m_move; }

private:
    int m_limit;
    int m_move = 0;
    bool m_found = false;
};

} // namespace

SnappableWindow::SnappableWindow(QWidget* window)
    : m_window(window) {
    allSnappable().append(this);
}

SnappableWindow::~SnappableWindow() {
    allSnappable().removeOne(this);
}

void SnappableWindow::setSnapDistance(int pixels) {
    m_snapDistance = std::max(0, pixels);
}

QPoint SnappableWindow::SnappedPosition(const QRect& window, const QVector<QRect>& areas,
                                        const QVector<QRect>& neighbours, int distance) {
    if (distance <= 0)
        return window.topLeft();
    NearestMove x(distance);
    NearestMove y(distance);
    for (const QRect& area : areas) {
        x.offer(window.left(), area.left());
        x.offer(window.right(), area.right());
        y.offer(window.top(), area.top());
        y.offer(window.bottom(), area.bottom());
    }
    for (const QRect& other : neighbours) {
        const QRect reach = other.adjusted(-distance, -distance, distance, distance);
        if (!reach.intersects(window))
            continue;
        x.offer(window.left(), other.right() + 1);
        x.offer(window.right(), other.left() - 1);
        x.offer(window.left(), other.left());
        x.offer(window.right(), other.right());
        y.offer(window.top(), other.bottom() + 1);
        y.offer(window.bottom(), other.top() - 1);
        y.offer(window.top(), other.top());
        y.offer(window.bottom(), other.bottom());
    }
    return window.topLeft() + QPoint(x.move(), y.move());
}

bool SnappableWindow::snap() {
    const auto fixedStates = Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    if (!m_window->isVisible() || (m_window->windowState() & fixedStates))
        return false;
    QVector<QRect> neighbours;
    for (const SnappableWindow* other : qAsConst(allSnappable())) {
        if (other != this && other->m_window->isVisible() && other->m_window->isWindow())
            neighbours.append(other->m_window->frameGeometry());
    }
    const QRect frame = m_window->frameGeometry();
    const QPoint to =
        SnappedPosition(frame, WindowPlacement::AvailableAreas(), neighbours, m_snapDistance);
    if (to == frame.topLeft())
        return false;
    m_window->move(to);
    return true;
}

void SnappableWindow::snapEvent(const QEvent* event) {
    switch (event->type()) {
    case QEvent::NonClientAreaMouseButtonPress:
        m_movedByFrame = false;
        break;
    case QEvent::Move:
        m_movedByFrame = m_movedByFrame || event->spontaneous();
        break;
    case QEvent::NonClientAreaMouseButtonRelease:
        if (m_movedByFrame)
            snap();
        m_movedByFrame = false;
        break;
    default:
        break;
    }
}

} // namespace Kestrel::UI
