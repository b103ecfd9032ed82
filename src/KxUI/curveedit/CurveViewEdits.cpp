#include <KxUI/curveedit/CurveLimits_p.h>
#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curves/KeyCurve.h>
#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int Monotone = int(KeyCurve::Shape::Monotone);

// Which of these may be taken away: those in the middle first, so that a curve keeps its ends.
std::vector<int> removable(const CurveModel& model, int curve, std::vector<int> knots) {
    if (!model.abilities(curve).testFlag(CurveModel::CanRemove))
        return {};
    const int most = std::max(0, model.knots(curve) - model.limits(curve).fewestKnots);
    while (int(knots.size()) > most) {
        const bool isLast = knots.back() == model.knots(curve) - 1;
        knots.erase(isLast ? knots.end() - 1 : knots.begin());
    }
    return knots;
}

bool isIdentity(const CurveModel& model, int curve) {
    if (model.knots(curve) != 2)
        return false;
    const CurveModel::Knot first = model.knot(curve, 0);
    const CurveModel::Knot last = model.knot(curve, 1);
    return first.x == 0.0 && first.y == 0.0 && last.x == 1.0 && last.y == 1.0;
}

} // namespace

bool CurveViewPrivate::removeSelected(const QString& what) {
    std::vector<std::pair<int, std::vector<int>>> all;
    int count = 0;
    for (const int curve : editableCurves()) {
        std::vector<int> knots = removable(*model, curve, model->selectedKnots(curve));
        count += int(knots.size());
        if (!knots.empty())
            all.emplace_back(curve, std::move(knots));
    }
    if (count == 0)
        return true;
    const QString text = !what.isEmpty() ? what
                         : count == 1    ? CurveView::tr("delete knot")
                                         : CurveView::tr("delete %n knots", nullptr, count);
    return edit.editOnce(text, [this, all, count] {
        const QPointer<CurveView> self(q);
        for (const auto& [curve, knots] : all) {
            if (!self || !hasCurve(curve) || !model->remove(curve, knots) || !self || !model)
                return;
            // What the next key is to mean.
            const int next = std::min(knots.front(), model->knots(curve) - 1);
            if (count == 1 && next >= 0)
                model->select(curve, next, next, CurveModel::SelectOnly);
        }
    });
}

// On the identity line where there is one; by the curve's own way where it has shapes.
void CurveViewPrivate::resetKnots(const std::vector<CurveKnot>& knots) {
    std::vector<CurveModel::Move> moves;
    std::vector<CurveKnot> bent;
    for (const CurveKnot& each : knots) {
        const CurveModel::Knot knot = model->knot(each.curve, each.knot);
        if (isUnitSquare(each.curve) && knot.y != knot.x)
            moves.push_back({each.curve, each.knot, knot.x, knot.x});
        else if (model->abilities(each.curve).testFlag(CurveModel::HasShapes) &&
                 knot.shape != Monotone)
            bent.push_back(each);
    }
    const int count = int(moves.size() + bent.size());
    if (count == 0)
        return;
    const QString text =
        count == 1 ? CurveView::tr("reset knot") : CurveView::tr("reset %n knots", nullptr, count);
    edit.editOnce(text, [this, moves, bent] {
        const QPointer<CurveView> self(q);
        if (!moves.empty())
            model->move(moves);
        for (const CurveKnot& each : bent) {
            if (self && hasCurve(each.curve))
                model->setShape(each.curve, {each.knot}, Monotone);
        }
    });
}

// Within the run of a key that is held.
void CurveViewPrivate::nudge(const QKeyEvent& event, const QPointF& direction) {
    if (!edit.beginKey(event) || !model)
        return;
    const CurveGroup group = CurveGroup::selected(scene());
    if (group.isEmpty())
        return;
    const CurveKnot last = focused();
    const CurveModel::Knot knot =
        hasKnot(last) ? model->knot(last.curve, last.knot) : CurveModel::Knot();
    const QPointF step = nudgeStep() * EditModifiers::factor(event.modifiers());
    const QPointF wanted(direction.x() * step.x(), direction.y() * step.y());
    const QPointF way = group.limitedWay(wanted, {knot.x, knot.y});
    if (!way.isNull())
        edit.change(moveText(group.count()), [&] { model->move(group.moved(way)); });
}

// The x nearest to `x` that the knot may have between its neighbours; false where there is none.
bool CurveViewPrivate::nearestX(const CurveKnot& knot, double& x) const {
    const auto [curve, index] = knot;
    const CurveModel::Knot now = model->knot(curve, index);
    if (x == now.x)
        return true;
    if (!model->abilities(curve).testFlag(CurveModel::CanMoveX))
        return false;
    const bool isLast = index + 1 == model->knots(curve);
    const double before = index > 0 ? model->knot(curve, index - 1).x : -HUGE_VAL;
    const double after = isLast ? HUGE_VAL : model->knot(curve, index + 1).x;
    return CurveLimits::place(model->limits(curve), before, after, x);
}

// In the middle of the gap behind the selected knot, or before it where it is the last.
void CurveViewPrivate::insertBehind() {
    if (!hasCurve(current) || model->knots(current) < 2)
        return;
    const int knots = model->knots(current);
    const int left = std::clamp(focused().knot, 0, knots - 2);
    const double x = (model->knot(current, left).x + model->knot(current, left + 1).x) / 2.0;
    q->addOnCurve(x);
}

// Whether a curve takes another knot; says so where it does not.
bool CurveViewPrivate::canAdd(int curve) {
    if (!hasCurve(curve) || !model->abilities(curve).testFlag(CurveModel::CanAdd))
        return false;
    const int most = model->limits(curve).mostKnots;
    if (model->knots(curve) < most)
        return true;
    say(CurveView::tr("%n knots at most", nullptr, most));
    return false;
}

bool CurveViewPrivate::hasRoom(int curve, double x) const {
    const int next = model->firstKnotFrom(curve, x);
    const int knots = model->knots(curve);
    const bool isThere = next < knots && model->knot(curve, next).x == x;
    const int after = isThere ? next + 1 : next;
    const double low = after > 0 ? model->knot(curve, after - 1).x : -HUGE_VAL;
    const double high = after < knots ? model->knot(curve, after).x : HUGE_VAL;
    return CurveLimits::place(model->limits(curve), low, high, x);
}

void CurveViewPrivate::addOnce(int curve, const QPointF& place, bool onLine) {
    edit.editOnce(CurveView::tr("add knot"), [this, curve, place, onLine] {
        const QPointer<CurveView> self(q);
        const int added =
            onLine ? model->addOnLine(curve, place.x()) : model->add(curve, place.x(), place.y());
        if (self && added >= 0 && hasKnot({curve, added}))
            selectOnly({curve, added});
    });
}

void CurveViewPrivate::moveOnce(const std::vector<CurveModel::Move>& moves) {
    std::vector<CurveModel::Move> real;
    for (const CurveModel::Move& each : moves) {
        const CurveModel::Knot knot = model->knot(each.curve, each.knot);
        if (knot.x != each.x || knot.y != each.y)
            real.push_back(each);
    }
    if (real.empty())
        return;
    const int count = int(real.size());
    edit.editOnce(moveText(count), [this, real] { model->move(real); });
}

QString CurveViewPrivate::moveText(int knots) {
    return knots == 1 ? CurveView::tr("move knot") : CurveView::tr("move %n knots", nullptr, knots);
}

void CurveViewPrivate::say(const QString& text) {
    if (text == notice)
        return;
    notice = text;
    q->update();
    Q_EMIT q->notice(text);
}

void CurveView::addOnCurve(double x) {
    KXUI_INTERFACE_THREAD(this);
    if (std::isfinite(x) && d->canAdd(d->current) && d->hasRoom(d->current, x))
        d->addOnce(d->current, {x, 0.0}, true);
}

void CurveView::deleteSelected() {
    KXUI_INTERFACE_THREAD(this);
    d->removeSelected({});
}

void CurveView::resetSelected() {
    KXUI_INTERFACE_THREAD(this);
    d->resetKnots(d->selected());
}

void CurveView::resetCurve() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->hasCurve(d->current) || !d->isUnitSquare(d->current))
        return;
    const int curve = d->current;
    if (isIdentity(*d->model, curve))
        return;
    d->edit.editOnce(tr("reset curve"),
                     [this, curve] { d->model->load(curve, QByteArrayLiteral("(0, 0), (1, 1)")); });
}

void CurveView::setSelectedShape(int shape) {
    KXUI_INTERFACE_THREAD(this);
    std::vector<std::pair<int, std::vector<int>>> all;
    for (const int curve : d->editableCurves()) {
        if (!d->model->abilities(curve).testFlag(CurveModel::HasShapes))
            continue;
        std::vector<int> knots;
        for (const int knot : d->model->selectedKnots(curve)) {
            if (d->model->knot(curve, knot).shape != shape)
                knots.push_back(knot);
        }
        if (!knots.empty())
            all.emplace_back(curve, std::move(knots));
    }
    if (all.empty())
        return;
    d->edit.editOnce(tr("shape"), [this, all, shape] {
        const QPointer<CurveView> self(this);
        for (const auto& [curve, knots] : all) {
            if (self && d->hasCurve(curve))
                d->model->setShape(curve, knots, shape);
        }
    });
}

void CurveView::setSelectedPosition(double x, double y) {
    KXUI_INTERFACE_THREAD(this);
    const std::vector<CurveKnot> knots = d->selected();
    std::vector<CurveModel::Move> moves;
    for (const CurveKnot& each : knots) {
        const CurveModel::Limits limits = d->model->limits(each.curve);
        const CurveModel::Knot knot = d->model->knot(each.curve, each.knot);
        double wantedX = knots.size() == 1 && std::isfinite(x) ? x : knot.x;
        if (!d->nearestX(each, wantedX))
            wantedX = knot.x;
        const double wantedY = std::isfinite(y) ? std::clamp(y, limits.lowY, limits.highY) : knot.y;
        moves.push_back({each.curve, each.knot, wantedX, wantedY});
    }
    d->moveOnce(moves);
}

} // namespace Kestrel::UI
