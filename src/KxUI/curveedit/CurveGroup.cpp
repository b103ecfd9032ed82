#include <KxUI/curveedit/CurveGroup_p.h>

#include <KxUI/curveedit/CurveLimits_p.h>
#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/curves/KeyCurve.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>

namespace Kestrel::UI {
namespace {

double limited(double value, double low, double high) {
    return std::min(std::max(value, low), high);
}

// What may be chosen: all numbers from `low` to `high`.
struct Choice {
    double low = -HUGE_VAL;
    double high = HUGE_VAL;

    void limit(double least, double most) {
        low = std::max(low, least);
        high = std::min(high, most);
    }
    bool isEmpty() const { return !(low <= high); }
    /** `otherwise` where nothing may be chosen. */
    double nearest(double wanted, double otherwise) const {
        return isEmpty() || std::isnan(wanted) ? otherwise : limited(wanted, low, high);
    }
};

// The factors that keep a + distance * factor between two places.
void limitFactor(Choice& choice, double about, double place, double low, double high) {
    const double distance = place - about;
    if (distance == 0)
        return;
    const double toLow = (low - about) / distance;
    const double toHigh = (high - about) / distance;
    choice.limit(std::min(toLow, toHigh), std::max(toLow, toHigh));
}

// No curve takes a number beyond these, which the pixels beside a steep scale may well name.
CurveModel::Limits limitsOf(const CurveModel& model, int curve) {
    const double largest = std::nextafter(KeyCurve::Largest, 0);
    CurveModel::Limits limits = model.limits(curve);
    limits.lowX = std::max(limits.lowX, -largest);
    limits.highX = std::min(limits.highX, largest);
    limits.lowY = std::max(limits.lowY, -largest);
    limits.highY = std::min(limits.highY, largest);
    return limits;
}

QPointF placeOf(const CurveModel& model, int curve, int knot) {
    QPointF place;
    model.places(curve, knot, 1, &place);
    return place;
}

} // namespace

CurveGroup CurveGroup::selected(const CurveScene& scene) {
    CurveGroup group;
    for (const int curve : scene.curves) {
        if (scene.holds(curve))
            group.add(scene, curve, scene.model->selectedKnots(curve));
    }
    return group;
}

CurveGroup CurveGroup::of(const CurveScene& scene, int curve, int knot) {
    CurveGroup group;
    if (scene.holds(curve, knot))
        group.add(scene, curve, {knot});
    return group;
}

void CurveGroup::add(const CurveScene& scene, int curve, const std::vector<int>& knots) {
    if (knots.empty())
        return;
    const CurveModel& model = *scene.model;
    const CurveModel::Limits limits = limitsOf(model, curve);
    const int count = model.knots(curve);
    m_counts.push_back({curve, count});
    m_canMoveX = m_canMoveX && scene.can(curve, CurveModel::CanMoveX);
    m_stepX = std::max(m_stepX, limits.stepX);
    for (std::size_t i = 0; i < knots.size(); ++i) {
        const int knot = knots[i];
        const QPointF place = placeOf(model, curve, knot);
        Item item{{curve, knot, place.x(), place.y()},
                  limits.lowX,
                  limits.highX,
                  limits.lowY,
                  limits.highY};
        const bool goesAfter = i > 0 && knots[i - 1] == knot - 1;
        const bool goesBefore = i + 1 < knots.size() && knots[i + 1] == knot + 1;
        if (goesAfter) {
            const double ulps = DBL_EPSILON * 4 * std::abs(place.x());
            item.before = place.x() - m_items.back().start.x;
            item.gap = std::max({limits.gap, limits.stepX, ulps});
        } else if (knot > 0) {
            const double x = placeOf(model, curve, knot - 1).x();
            item.lowX = std::max(item.lowX, CurveLimits::leastBehind(x, limits.gap));
        }
        if (!goesBefore && knot + 1 < count) {
            const double x = placeOf(model, curve, knot + 1).x();
            item.highX = std::min(item.highX, CurveLimits::mostBefore(x, limits.gap));
        }
        m_items.push_back(item);
    }
}

bool CurveGroup::holds(int curve, int knot) const {
    return std::any_of(m_items.begin(), m_items.end(), [&](const Item& item) {
        return item.start.curve == curve && item.start.knot == knot;
    });
}

QPointF CurveGroup::low() const {
    QPointF low(HUGE_VAL, HUGE_VAL);
    for (const Item& item : m_items)
        low = {std::min(low.x(), item.start.x), std::min(low.y(), item.start.y)};
    return low;
}

QPointF CurveGroup::high() const {
    QPointF high(-HUGE_VAL, -HUGE_VAL);
    for (const Item& item : m_items)
        high = {std::max(high.x(), item.start.x), std::max(high.y(), item.start.y)};
    return high;
}

bool CurveGroup::isPresent(const CurveScene& scene) const {
    return std::all_of(m_counts.begin(), m_counts.end(), [&](const Count& count) {
        return scene.holds(count.curve) && scene.model->knots(count.curve) == count.knots;
    });
}

QPointF CurveGroup::limitedWay(const QPointF& way, const QPointF& grip) const {
    Choice x;
    Choice y;
    for (const Item& item : m_items) {
        x.limit(item.lowX - item.start.x, item.highX - item.start.x);
        y.limit(item.lowY - item.start.y, item.highY - item.start.y);
    }
    const double dy = y.nearest(way.y(), 0);
    if (!m_canMoveX)
        return {0, dy};
    double dx = x.nearest(way.x(), 0);
    if (m_stepX > 0 && dx != 0 && !x.isEmpty()) {
        CurveModel::Limits grid;
        grid.stepX = m_stepX;
        grid.lowX = grip.x() + x.low;
        grid.highX = grip.x() + x.high;
        double place = grip.x() + dx;
        dx = CurveLimits::place(grid, -HUGE_VAL, HUGE_VAL, place) ? place - grip.x() : 0;
    }
    return {dx, dy};
}

CurveGroup::Moves CurveGroup::moved(const QPointF& way) const {
    Moves moves;
    moves.reserve(m_items.size());
    for (const Item& item : m_items) {
        moves.push_back(item.start);
        // By rounding, what was limited may still be a little too far.
        if (way.x() != 0)
            moves.back().x = limited(item.start.x + way.x(), item.lowX, item.highX);
        if (way.y() != 0)
            moves.back().y = limited(item.start.y + way.y(), item.lowY, item.highY);
    }
    if (way.x() != 0)
        keepApart(moves);
    return moves;
}

void CurveGroup::meet(Moves& moves, int curve, int knot, const QPointF& way,
                      const QPointF& place) const {
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const Item& item = m_items[i];
        if (item.start.curve != curve || item.start.knot != knot)
            continue;
        if (item.start.x + way.x() == moves[i].x && way.x() == place.x() - item.start.x)
            moves[i].x = limited(place.x(), item.lowX, item.highX);
        if (item.start.y + way.y() == moves[i].y && way.y() == place.y() - item.start.y)
            moves[i].y = limited(place.y(), item.lowY, item.highY);
    }
}

void CurveGroup::keepApart(Moves& moves) const {
    const std::size_t count = std::min(moves.size(), m_items.size());
    for (std::size_t i = 1; i < count; ++i) {
        if (m_items[i].before > 0)
            moves[i].x = std::max(moves[i].x, std::nextafter(moves[i - 1].x, HUGE_VAL));
    }
    for (std::size_t i = count; i-- > 0;) {
        moves[i].x = std::min(moves[i].x, std::max(m_items[i].highX, m_items[i].start.x));
        if (i + 1 < count && m_items[i + 1].before > 0)
            moves[i].x = std::min(moves[i].x, std::nextafter(moves[i + 1].x, -HUGE_VAL));
    }
}

QPointF CurveGroup::limitedScale(const QPointF& about, const QPointF& factors) const {
    Choice x;
    Choice y;
    x.limit(DBL_EPSILON, HUGE_VAL);
    for (const Item& item : m_items) {
        limitFactor(x, about.x(), item.start.x, item.lowX, item.highX);
        limitFactor(y, about.y(), item.start.y, item.lowY, item.highY);
        if (item.before > 0)
            x.limit(std::min(item.gap, item.before) / item.before, HUGE_VAL);
    }
    return {m_canMoveX ? x.nearest(factors.x(), 1) : 1, y.nearest(factors.y(), 1)};
}

CurveGroup::Moves CurveGroup::scaled(const QPointF& about, const QPointF& factors) const {
    Moves moves;
    moves.reserve(m_items.size());
    for (const Item& item : m_items) {
        moves.push_back(item.start);
        CurveModel::Move& move = moves.back();
        if (factors.x() != 1 && move.x != about.x())
            move.x = limited(about.x() + (move.x - about.x()) * factors.x(), item.lowX, item.highX);
        if (factors.y() != 1 && move.y != about.y())
            move.y = limited(about.y() + (move.y - about.y()) * factors.y(), item.lowY, item.highY);
    }
    if (factors.x() != 1)
        keepApart(moves);
    return moves;
}

CurveFrame CurveFrame::of(const CurveScene& scene) {
    if (!scene.hasFrame || !scene.model)
        return {};
    const CurveGroup group = CurveGroup::selected(scene);
    if (group.count() < 2)
        return {};
    const QRectF rect =
        QRectF(scene.plot.toWidget(group.low()), scene.plot.toWidget(group.high())).normalized();
    return {rect.adjusted(-Margin, -Margin, Margin, Margin)};
}

QPointF CurveFrame::side(int index) {
    constexpr std::array<int, Grips> x{-1, 0, 1, 1, 1, 0, -1, -1};
    constexpr std::array<int, Grips> y{1, 1, 1, 0, -1, -1, -1, 0};
    const auto i = std::size_t(index) % x.size();
    return QPointF(x[i], y[i]);
}

QPointF CurveFrame::grip(int index) const {
    const QPointF where = side(index);
    return rect.center() + QPointF(where.x() * rect.width() / 2, -where.y() * rect.height() / 2);
}

int CurveFrame::gripAt(const QPointF& position) const {
    int nearest = -1;
    double reach = Reach;
    for (int i = 0; i < Grips && !isNull(); ++i) {
        const QPointF way = grip(i) - position;
        const double distance = std::hypot(way.x(), way.y());
        if (distance > reach)
            continue;
        reach = distance;
        nearest = i;
    }
    return nearest;
}

} // namespace Kestrel::UI
