#include <KxUI/kit/WindowPlacement.h>

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <cstdint>

namespace Kestrel::UI {

namespace {

constexpr int GraspableSide = 32; // what must be seen of a window for the user to take hold of it
constexpr int Step = 24;

/** How many pixels two spans share; 0 or less for none. */
std::int64_t shared(int first, int last, int otherFirst, int otherLast) {
    return std::int64_t(std::min(last, otherLast)) - std::max(first, otherFirst) + 1;
}

/** By 64 bits: a stored place may be anywhere, and Qt 6 takes what begins at the least int to reach
    across every screen. */
bool isGraspable(const QRect& window, const QRect& area) {
    const auto least = [](int side) { return std::max(1, std::min(GraspableSide, side)); };
    return shared(window.left(), window.right(), area.left(), area.right()) >=
               least(window.width()) &&
           shared(window.top(), window.bottom(), area.top(), area.bottom()) >=
               least(window.height());
}

QRect movedInto(const QRect& window, const QRect& area) {
    const QSize size = window.size().boundedTo(area.size());
    const int x = std::max(area.left(), std::min(window.left(), area.right() + 1 - size.width()));
    const int y = std::max(area.top(), std::min(window.top(), area.bottom() + 1 - size.height()));
    return {QPoint(x, y), size};
}

} // namespace

QVector<QRect> WindowPlacement::availableAreas() {
    QVector<QRect> areas;
    const auto screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        areas.append(screen->availableGeometry());
    return areas;
}

QRect WindowPlacement::pulledBack(const QRect& window, const QVector<QRect>& areas) {
    const auto graspable = [&](const QRect& area) { return isGraspable(window, area); };
    if (areas.isEmpty() || std::any_of(areas.begin(), areas.end(), graspable))
        return window;
    return movedInto(window, areas.first());
}

QPoint WindowPlacement::positionAside(const QRect& window, const QVector<QRect>& others,
                                      const QRect& avoid, const QVector<QRect>& areas) {
    const auto obscures = [&](const QRect& place) {
        return (!avoid.isNull() && place.intersects(avoid)) ||
               std::any_of(others.begin(), others.end(),
                           [&](const QRect& other) { return place.contains(other); });
    };
    if (!obscures(window))
        return window.topLeft();

    const auto home = std::find_if(areas.begin(), areas.end(), [&](const QRect& area) {
        return area.contains(window.center());
    });
    if (home == areas.end())
        return window.topLeft();

    QVector<QPoint> candidates;
    for (int i = 1; i <= 8; ++i)
        candidates.append(window.topLeft() + QPoint(i * Step, i * Step));
    QVector<QRect> obstacles = others;
    if (!avoid.isNull())
        obstacles.prepend(avoid);
    for (const QRect& obstacle : qAsConst(obstacles)) {
        candidates << QPoint(obstacle.right() + 1, window.top())
                   << QPoint(obstacle.left() - window.width(), window.top())
                   << QPoint(window.left(), obstacle.bottom() + 1)
                   << QPoint(window.left(), obstacle.top() - window.height());
    }
    for (const QPoint& candidate : qAsConst(candidates)) {
        const QRect place(candidate, window.size());
        if (home->contains(place) && !obscures(place))
            return candidate;
    }
    return window.topLeft();
}

bool WindowPlacement::moveAside(QWidget* window, const QWidget* avoid) {
    if (!window)
        return false;
    const QRect frame = window->frameGeometry();
    const QVector<QRect> areas = availableAreas();
    QRect place = pulledBack(frame, areas);

    QVector<QRect> others;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* other : windows) {
        const bool isFurniture = other->windowType() == Qt::Popup ||
                                 other->windowType() == Qt::ToolTip ||
                                 other->windowType() == Qt::Desktop;
        if (other != window && other->isVisible() && !other->isMinimized() && !isFurniture)
            others.append(other->frameGeometry());
    }
    const QRect avoided = avoid ? QRect(avoid->mapToGlobal(QPoint()), avoid->size()) : QRect();
    place.moveTopLeft(positionAside(place, others, avoided, areas));
    if (place == frame)
        return false;
    window->resize(window->size() - (frame.size() - place.size()));
    window->move(place.topLeft());
    return true;
}

} // namespace Kestrel::UI
