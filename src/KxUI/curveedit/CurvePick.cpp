#include <KxUI/curveedit/CurvePick_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

QPointF withinLimits(const CurveModel::Limits& limits, const QPointF& point) {
    return {std::min(std::max(point.x(), limits.lowX), limits.highX),
            std::min(std::max(point.y(), limits.lowY), limits.highY)};
}

struct Candidate {
    int curve;
    int knot;
    double distance;
    QPointF place;
};

// Looks for the nearest knots from the cursor outwards, so that of thousands within reach only those
// are looked at that are not farther in x than the nearest one has been found.
class KnotSearch {
public:
    KnotSearch(const CurveScene& scene, const QPointF& position)
        : m_scene(scene)
        , m_position(position) {}

    void look(int curve) {
        m_curve = curve;
        m_limits = m_scene.model->limits(curve);
        const int count = m_scene.model->knots(curve);
        const double x = m_scene.plot.xAt(m_position.x());
        int right = m_scene.model->firstKnotFrom(curve, x);
        int left = right;
        bool goesLeft = left > 0;
        bool goesRight = right < count;
        while (goesLeft || goesRight) {
            if (goesLeft) {
                const int first = std::max(0, left - Block);
                goesLeft = lookAt(first, left - first, false) && first > 0;
                left = first;
            }
            if (goesRight) {
                const int end = std::min(count, right + Block);
                goesRight = lookAt(right, end - right, true) && end < count;
                right = end;
            }
        }
    }

    // Those that are about as near as the nearest one, by curve and index.
    std::vector<Candidate> take() {
        const auto isFar = [this](const Candidate& each) {
            return each.distance > m_nearest + CurvePick::TieReach;
        };
        m_found.erase(std::remove_if(m_found.begin(), m_found.end(), isFar), m_found.end());
        std::sort(m_found.begin(), m_found.end(), [](const Candidate& a, const Candidate& b) {
            return a.curve != b.curve ? a.curve < b.curve : a.knot < b.knot;
        });
        return std::move(m_found);
    }

private:
    static constexpr int Block = 16;

    // Whether nearer ones may follow behind these.
    bool lookAt(int first, int count, bool rightwards) {
        std::array<QPointF, Block> places;
        m_scene.model->places(m_curve, first, count, places.data());
        for (int i = 0; i < count; ++i) {
            const QPointF point = shownPoint(places[std::size_t(i)]);
            const QPointF place(m_scene.plot.toX(point.x()), m_scene.plot.toY(point.y()));
            const QPointF way = place - m_position;
            if (!(std::abs(way.x()) <= m_reach && std::abs(way.y()) <= m_reach))
                continue;
            const double away = std::hypot(way.x(), way.y());
            if (away > m_reach)
                continue;
            m_nearest = std::min(m_nearest, away);
            m_reach = std::min(CurvePick::KnotReach, m_nearest + CurvePick::TieReach);
            m_found.push_back({m_curve, first + i, away, place});
        }
        const QPointF last = shownPoint(places[std::size_t(rightwards ? count - 1 : 0)]);
        return std::abs(m_scene.plot.toX(last.x()) - m_position.x()) <= m_reach;
    }

    QPointF shownPoint(const QPointF& point) const { return withinLimits(m_limits, point); }

    const CurveScene& m_scene;
    const QPointF m_position;
    int m_curve = 0;
    CurveModel::Limits m_limits;
    double m_nearest = CurvePick::KnotReach;
    double m_reach = CurvePick::KnotReach;
    std::vector<Candidate> m_found;
};

// Better ones first.
int rank(const CurveScene& scene, const Candidate& each) {
    if (scene.model->knot(each.curve, each.knot).selected)
        return 0;
    return each.curve == scene.current ? 1 : 2;
}

const Candidate& bestOf(const CurveScene& scene, const std::vector<Candidate>& ties) {
    return *std::min_element(ties.begin(), ties.end(), [&](const Candidate& a, const Candidate& b) {
        const int rankA = rank(scene, a);
        const int rankB = rank(scene, b);
        return rankA != rankB ? rankA < rankB : a.distance < b.distance;
    });
}

const Candidate* behind(const std::vector<Candidate>& ties, const CurveHit& previous) {
    for (std::size_t i = 0; i < ties.size(); ++i) {
        if (ties[i].curve == previous.curve && ties[i].knot == previous.knot)
            return &ties[(i + 1) % ties.size()];
    }
    return nullptr;
}

// The place of a line that is nearest to a position, by short pieces of it; far ones are none.
struct LinePlace {
    QPointF place;
    double distance = HUGE_VAL;
};

LinePlace nearestPlace(const CurveScene& scene, int curve, const QPointF& position) {
    constexpr int Steps = 24;
    LinePlace nearest;
    QPointF before;
    for (int i = 0; i <= Steps; ++i) {
        const double pixel = position.x() + CurvePick::LineReach * (2.0 * i / Steps - 1);
        const double x = scene.plot.xAt(pixel);
        double y = 0;
        scene.model->sample(curve, x, x, 1, &y);
        const QPointF place(pixel, scene.plot.toY(y));
        if (i > 0) {
            const QPointF way = place - before;
            const double length = QPointF::dotProduct(way, way);
            const double part =
                length > 0 ? QPointF::dotProduct(position - before, way) / length : 0;
            const QPointF foot = before + way * std::clamp(part, 0.0, 1.0);
            if (distance(foot, position) < nearest.distance)
                nearest = {foot, distance(foot, position)};
        }
        before = place;
    }
    return nearest;
}

} // namespace

CurveHit CurvePick::at(const CurveScene& scene, const QPointF& position, const CurveHit* previous) {
    if (const CurveHit handle = handleAt(scene, position))
        return handle;
    if (const CurveHit knot = knotAt(scene, position, previous))
        return knot;
    return lineAt(scene, position);
}

CurveHit CurvePick::knotAt(const CurveScene& scene, const QPointF& position,
                           const CurveHit* previous) {
    KnotSearch search(scene, position);
    for (const int curve : scene.curves) {
        if (scene.holds(curve))
            search.look(curve);
    }
    const std::vector<Candidate> ties = search.take();
    if (ties.empty())
        return {};
    const Candidate* const next = previous ? behind(ties, *previous) : nullptr;
    const Candidate& taken = next ? *next : bestOf(scene, ties);
    CurveHit hit;
    hit.part = CurveHit::Knot;
    hit.curve = taken.curve;
    hit.knot = taken.knot;
    hit.place = taken.place;
    hit.rivals = int(ties.size()) - 1;
    return hit;
}

CurveHit CurvePick::handleAt(const CurveScene& scene, const QPointF& position) {
    CurveHit hit;
    double nearest = HandleReach;
    if (!showsHandles(scene))
        return hit;
    for (const int curve : scene.curves) {
        if (!scene.can(curve, CurveModel::HasSlopes))
            continue;
        for (const int knot : scene.model->selectedKnots(curve)) {
            const CurveHandles handles = handlesOf(scene, curve, knot);
            const auto consider = [&](const std::optional<QPointF>& place, CurveHit::Part part) {
                if (!place || distance(*place, position) > nearest)
                    return;
                nearest = distance(*place, position);
                hit.part = part;
                hit.curve = curve;
                hit.knot = knot;
                hit.place = *place;
            };
            consider(handles.in, CurveHit::HandleIn);
            consider(handles.out, CurveHit::HandleOut);
        }
    }
    return hit;
}

CurveHit CurvePick::lineAt(const CurveScene& scene, const QPointF& position) {
    CurveHit hit;
    double nearest = HUGE_VAL;
    if (!scene.plot.rect().contains(position))
        return hit;
    for (const int curve : scene.curves) {
        if (!scene.holds(curve) || scene.model->knots(curve) == 0)
            continue;
        const double x = scene.plot.xAt(position.x());
        double y = 0;
        scene.model->sample(curve, x, x, 1, &y);
        LinePlace found{{position.x(), scene.plot.toY(y)}};
        found.distance = std::abs(found.place.y() - position.y());
        // Straight above or below first: there a new knot is right under the mouse.
        if (found.distance > LineReach)
            found = nearestPlace(scene, curve, position);
        const bool isFirst = curve == scene.current;
        if (found.distance > LineReach || (!isFirst && found.distance >= nearest))
            continue;
        nearest = isFirst ? -1 : found.distance;
        hit.part = CurveHit::Line;
        hit.curve = curve;
        hit.place = found.place;
        hit.x = found.place.x() == position.x() ? x : scene.plot.xAt(found.place.x());
    }
    return hit;
}

QPointF CurvePick::shownAt(const CurveScene& scene, int curve, const QPointF& place) {
    return scene.plot.toWidget(withinLimits(scene.model->limits(curve), place));
}

CurveHandles CurvePick::handlesOf(const CurveScene& scene, int curve, int knot) {
    CurveHandles handles;
    if (!scene.can(curve, CurveModel::HasSlopes) || !scene.holds(curve, knot))
        return handles;
    const CurveModel::Knot each = scene.model->knot(curve, knot);
    const QPointF point(each.x, each.y);
    const QPointF place = shownAt(scene, curve, point);
    const auto way = [&](double slope) {
        return scene.plot.direction(point, slope) * HandleLength;
    };
    if (knot > 0)
        handles.in = place - way(each.slopeIn);
    if (knot + 1 < scene.model->knots(curve))
        handles.out = place + way(each.slopeOut);
    return handles;
}

bool CurvePick::showsHandles(const CurveScene& scene) {
    std::size_t selected = 0;
    for (const int curve : scene.curves) {
        if (scene.can(curve, CurveModel::HasSlopes))
            selected += scene.model->selectedKnots(curve).size();
    }
    return selected > 0 && selected <= std::size_t(MostHandles);
}

QLineF CurvePick::slopeLineOf(const CurveScene& scene, int curve, int knot) {
    const CurveModel::Knot each = scene.model->knot(curve, knot);
    const QPointF place = shownAt(scene, curve, {each.x, each.y});
    const QPointF way = scene.plot.direction({each.x, each.y}, each.slopeOut) * SlopeLength;
    return {place - way, place + way};
}

bool CurvePick::isOnSlopeLine(const CurveScene& scene, const QPointF& position) {
    const auto isNear = [&](int curve, int knot) {
        const QLineF line = slopeLineOf(scene, curve, knot);
        const QPointF way = position - line.center();
        const double along = (way.x() * line.dx() + way.y() * line.dy()) / line.length();
        const double beside = (way.x() * line.dy() - way.y() * line.dx()) / line.length();
        return std::abs(along) <= SlopeLength && std::abs(beside) <= SlopeReach;
    };
    return std::any_of(scene.curves.begin(), scene.curves.end(), [&](int curve) {
        if (!scene.holds(curve) || scene.can(curve, CurveModel::HasSlopes))
            return false;
        const std::vector<int> knots = scene.model->selectedKnots(curve);
        return knots.size() <= std::size_t(MostHandles) &&
               std::any_of(knots.begin(), knots.end(),
                           [&](int knot) { return isNear(curve, knot); });
    });
}

bool CurvePick::isPulledOut(const CurvePlot& plot, const QPointF& position) {
    const double away = PullOutDistance;
    return !plot.rect().adjusted(-away, -away, away, away).contains(position);
}

std::vector<int> CurvePick::knotsIn(const CurveScene& scene, int curve, const QRectF& rect) {
    std::vector<int> inside;
    if (!scene.holds(curve))
        return inside;
    constexpr int Block = 256;
    std::array<QPointF, Block> places;
    const QRectF area = rect.normalized();
    const CurveModel::Limits limits = scene.model->limits(curve);
    const int count = scene.model->knots(curve);
    const bool isCut = area.left() > scene.plot.toX(limits.lowX);
    const int from = isCut ? scene.model->firstKnotFrom(curve, scene.plot.xAt(area.left())) : 0;
    for (int first = std::max(0, from - 1); first < count; first += Block) {
        const int size = std::min(Block, count - first);
        scene.model->places(curve, first, size, places.data());
        for (int i = 0; i < size; ++i) {
            const QPointF shown = scene.plot.toWidget(withinLimits(limits, places[std::size_t(i)]));
            if (shown.x() > area.right())
                return inside;
            if (shown.x() >= area.left() && shown.y() >= area.top() && shown.y() <= area.bottom())
                inside.push_back(first + i);
        }
    }
    return inside;
}

} // namespace Kestrel::UI
