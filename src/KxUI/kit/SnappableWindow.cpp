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

/** The data of a SnappableWindow. */
class SnappableWindowPrivate {
public:
    QWidget* window;
    int snapDistance = 10;
    bool movedByFrame = false;
};

SnappableWindow::SnappableWindow(QWidget* window)
    : d(new SnappableWindowPrivate{window}) {
    allSnappable().append(this);
}

SnappableWindow::~SnappableWindow() {
    allSnappable().removeOne(this);
}

int SnappableWindow::snapDistance() const {
    return d->snapDistance;
}

void SnappableWindow::setSnapDistance(int pixels) {
    d->snapDistance = std::max(0, pixels);
}

QPoint SnappableWindow::snappedPosition(const QRect& window, const QVector<QRect>& areas,
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
    if (!d->window || !d->window->isVisible() || (d->window->windowState() & fixedStates))
        return false;
    QVector<QRect> neighbours;
    for (const SnappableWindow* other : qAsConst(allSnappable())) {
        const QWidget* window = other->d->window;
        if (other != this && window && window->isVisible() && window->isWindow())
            neighbours.append(window->frameGeometry());
    }
    const QRect frame = d->window->frameGeometry();
    const QPoint to =
        snappedPosition(frame, WindowPlacement::availableAreas(), neighbours, d->snapDistance);
    if (to == frame.topLeft())
        return false;
    d->window->move(to);
    return true;
}

void SnappableWindow::snapEvent(const QEvent* event) {
    switch (event->type()) {
    case QEvent::NonClientAreaMouseButtonPress:
        d->movedByFrame = false;
        break;
    case QEvent::Move:
        d->movedByFrame = d->movedByFrame || event->spontaneous();
        break;
    case QEvent::NonClientAreaMouseButtonRelease:
        if (d->movedByFrame)
            snap();
        d->movedByFrame = false;
        break;
    default:
        break;
    }
}

} // namespace Kestrel::UI
