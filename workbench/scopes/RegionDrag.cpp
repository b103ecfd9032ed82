#include "scopes/RegionDrag.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::Workbench {

namespace {

constexpr double reach = 5.0;       // of an edge, to each side
constexpr double leastTravel = 4.0; // before a press is a drag

/** An interval whose ends may lie the wrong way round, inside 0 to `most`, at least 1 long. */
std::pair<int, int> interval(int a, int b, int most) {
    int first = std::clamp(std::min(a, b), 0, most);
    int last = std::clamp(std::max(a, b), 0, most);
    if (first == last) {
        first = std::min(first, most - 1);
        last = first + 1;
    }
    return {first, last};
}

QRect regionOf(const std::pair<int, int>& across, const std::pair<int, int>& down) {
    return {across.first, down.first, across.second - across.first, down.second - down.first};
}

/** The first of two edges where it is nearer than the second, and near enough. */
int edgeAt(double at, double first, double last, int firstEdge, int lastEdge) {
    const double toFirst = std::abs(at - first);
    const double toLast = std::abs(at - last);
    if (std::min(toFirst, toLast) > reach)
        return 0;
    return toFirst < toLast ? firstEdge : lastEdge;
}

} // namespace

QPointF PicturePlace::toPicture(const QPointF& position) const {
    return {(position.x() - target.x()) / target.width() * pixels.width(),
            (position.y() - target.y()) / target.height() * pixels.height()};
}

QRectF PicturePlace::toWidget(const QRect& rect) const {
    const double across = target.width() / pixels.width();
    const double down = target.height() / pixels.height();
    return {target.x() + rect.x() * across, target.y() + rect.y() * down, rect.width() * across,
            rect.height() * down};
}

int regionEdgesAt(const PicturePlace& place, const QRect& region, const QPointF& position) {
    if (place.isEmpty() || region.isEmpty())
        return 0;
    const QRectF box = place.toWidget(region);
    if (!box.adjusted(-reach, -reach, reach, reach).contains(position))
        return 0;
    const int edges = edgeAt(position.x(), box.left(), box.right(), LeftEdge, RightEdge) |
                      edgeAt(position.y(), box.top(), box.bottom(), TopEdge, BottomEdge);
    return edges != 0 ? edges : AllEdges;
}

QRect movedRegion(const QRect& region, int edges, const QPoint& by, const QSize& picture) {
    if (picture.isEmpty())
        return region;
    if (edges == AllEdges) {
        const QPoint last(std::max(picture.width() - region.width(), 0),
                          std::max(picture.height() - region.height(), 0));
        const QPoint corner(std::clamp(region.x() + by.x(), 0, last.x()),
                            std::clamp(region.y() + by.y(), 0, last.y()));
        return QRect(corner, region.size()) & QRect(QPoint(), picture);
    }
    const auto moved = [edges](int place, int edge, int way) {
        return (edges & edge) != 0 ? place + way : place;
    };
    const int right = region.x() + region.width();
    const int bottom = region.y() + region.height();
    return regionOf(interval(moved(region.x(), LeftEdge, by.x()), moved(right, RightEdge, by.x()),
                             picture.width()),
                    interval(moved(region.y(), TopEdge, by.y()), moved(bottom, BottomEdge, by.y()),
                             picture.height()));
}

void RegionDrag::press(const PicturePlace& place, const QRect& region, const QPointF& position) {
    m_isPressed = !place.isEmpty();
    m_hasBegun = false;
    m_edges = regionEdgesAt(place, region, position);
    m_from = position;
    m_start = region;
}

std::optional<QRect> RegionDrag::move(const PicturePlace& place, const QPointF& position) {
    if (!m_isPressed || place.isEmpty())
        return std::nullopt;
    const QPointF travel = position - m_from;
    if (!m_hasBegun && std::abs(travel.x()) + std::abs(travel.y()) < leastTravel)
        return std::nullopt;
    m_hasBegun = true;
    const QPointF from = place.toPicture(m_from);
    const QPointF to = place.toPicture(position);
    const auto whole = [](double number) { return int(std::lround(number)); };
    if (m_edges == 0) {
        return regionOf(interval(whole(from.x()), whole(to.x()), place.pixels.width()),
                        interval(whole(from.y()), whole(to.y()), place.pixels.height()));
    }
    const QPoint by(whole(to.x() - from.x()), whole(to.y() - from.y()));
    return movedRegion(m_start, m_edges, by, place.pixels);
}

bool RegionDrag::release() {
    m_isPressed = false;
    return std::exchange(m_hasBegun, false);
}

} // namespace Kestrel::Workbench
