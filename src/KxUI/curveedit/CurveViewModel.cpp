#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/curveedit/CurveViewAccessible_p.h>
#include <KxUI/time/TimeFormatter.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Margin = 8.0;      // around the plot, for knots at its edge
constexpr int ScrollInterval = 100; // milliseconds
constexpr double StepsInSight = 100.0;
// What is painted around a knot: its handles, its frame.
constexpr double Surroundings = 72.0;

// 1, 2 or 5 times a power of ten, the nearest by ratio.
double rounded125(double x) {
    if (!(x > 0.0) || !std::isfinite(x))
        return 1.0;
    const double exponent = std::floor(std::log10(x));
    const double power = std::pow(10.0, std::abs(exponent));
    const double share = exponent < 0.0 ? x * power : x / power;
    const double kept = share < 1.42 ? 1.0 : share < 3.17 ? 2.0 : share < 7.08 ? 5.0 : 10.0;
    return exponent < 0.0 ? kept / power : kept * power;
}

QRectF united(const QRectF& a, const QRectF& b) {
    return QRectF(QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
                  QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom())));
}

} // namespace

CurveViewPrivate::CurveViewPrivate(CurveView* view)
    : q(view)
    , edit(view) {
    scrollTimer.setInterval(ScrollInterval);
    QObject::connect(&scrollTimer, &QTimer::timeout, view, [this] { scroll(); });
}

// -- The model

void CurveViewPrivate::setModel(CurveModel* wanted) {
    const QPointer<CurveView> self(q);
    const QPointer<CurveModel> kept(wanted);
    if (wanted == model || !edit.finish())
        return;
    if (model)
        QObject::disconnect(model, nullptr, q, nullptr);
    model = kept;
    endDrag();
    hidden.clear();
    hovered = {};
    current = 0;
    pictures.forgetAll();
    selections.clear();
    if (model)
        follow();
    q->update();
    Q_EMIT q->modelChanged();
    if (self)
        Q_EMIT q->currentCurveChanged(current);
    if (self)
        Q_EMIT q->selectionChanged();
}

void CurveViewPrivate::follow() {
    CurveModel* const followed = model;
    QObject::connect(followed, &CurveModel::knotsChanged, q,
                     [this](int curve, int first, int last) { knotsChanged(curve, first, last); });
    QObject::connect(followed, &CurveModel::selectionChanged, q,
                     [this](int curve) { selectionChanged(curve); });
    QObject::connect(followed, &CurveModel::curvesChanged, q, [this] { curvesChanged(); });
    // Its own signals are no more, and neither are its virtual functions.
    QObject::connect(followed, &QObject::destroyed, q, [this] { modelDied(); });
}

void CurveViewPrivate::modelDied() {
    model.clear();
    pictures.forgetAll();
    selections.clear();
    hovered = {};
    current = 0;
    endDrag();
    q->update();
    const QPointer<CurveView> self(q);
    if (edit.finish())
        Q_EMIT q->modelChanged();
    if (self)
        Q_EMIT q->selectionChanged();
}

void CurveViewPrivate::knotsChanged(int curve, int first, int last) {
    if (!hasCurve(curve))
        return;
    const QRect changed = regionOf(curve, first, last);
    pictures.forget(curve, changed);
    if (changed == q->rect())
        forgetSelection(curve); // knots may have come or gone
    q->update(changed);
    q->update(textRect());
    if (hovered.curve == curve && !hasKnot(hovered))
        hovered = {};
    CurveViewAccessible::tellValue(q);
    if (!edit.isChanging())
        meetChange();
}

// Knots and their line between the neighbours that stayed where they are.
QRect CurveViewPrivate::regionOf(int curve, int first, int last) const {
    const int knots = model->knots(curve);
    const QRect all = q->rect();
    if (first > last || knots == 0)
        return all;
    const auto xOf = [&](int knot) { return plot.toX(model->knot(curve, knot).x); };
    const double left = first > 0 && first <= knots ? xOf(first - 1) - Surroundings : 0.0;
    const double right = last + 1 < knots ? xOf(last + 1) + Surroundings : all.width();
    if (!(right - left < all.width()))
        return all;
    const QRect strip(int(std::floor(left)), 0, int(std::ceil(right - left)) + 1, all.height());
    return strip & all;
}

void CurveViewPrivate::selectionChanged(int curve) {
    if (!hasCurve(curve))
        return;
    forgetSelection(curve);
    q->update();
    CurveViewAccessible::tellSelection(q);
    Q_EMIT q->selectionChanged();
}

void CurveViewPrivate::curvesChanged() {
    const QPointer<CurveView> self(q);
    pictures.forgetAll();
    selections.clear();
    hovered = {};
    if (!edit.isChanging() && !edit.finish())
        return;
    q->update();
    const int kept = std::clamp(current, 0, std::max(0, model ? model->count() - 1 : 0));
    if (kept != std::exchange(current, kept))
        Q_EMIT q->currentCurveChanged(kept);
    if (self)
        Q_EMIT q->selectionChanged();
}

bool CurveViewPrivate::isVisible(int curve) const {
    return curve == current || std::size_t(curve) >= hidden.size() || !hidden[std::size_t(curve)];
}

bool CurveViewPrivate::isEditable(int curve) const {
    return hasCurve(curve) && (curve == current || (othersEditable && isVisible(curve)));
}

std::vector<int> CurveViewPrivate::editableCurves() const {
    std::vector<int> curves;
    for (int curve = 0; model && curve < model->count(); ++curve) {
        if (isEditable(curve))
            curves.push_back(curve);
    }
    return curves;
}

bool CurveViewPrivate::hasKnot(const CurveKnot& knot) const {
    return hasCurve(knot.curve) && knot.knot >= 0 && knot.knot < model->knots(knot.curve);
}

// Asked for at every painting; a model with very many knots has to look for them.
const std::vector<int>& CurveViewPrivate::selectedOf(int curve) const {
    const auto [found, isNew] = selections.try_emplace(curve);
    if (isNew)
        found->second = model->selectedKnots(curve);
    return found->second;
}

void CurveViewPrivate::forgetSelection(int curve) {
    selections.erase(curve);
}

std::vector<CurveKnot> CurveViewPrivate::selected() const {
    std::vector<CurveKnot> all;
    for (const int curve : editableCurves()) {
        for (const int knot : selectedOf(curve))
            all.push_back({curve, knot});
    }
    return all;
}

int CurveViewPrivate::selectedCount() const {
    int count = 0;
    for (const int curve : editableCurves())
        count += int(selectedOf(curve).size());
    return count;
}

CurveKnot CurveViewPrivate::focused() const {
    if (!hasCurve(current))
        return {};
    const std::vector<int>& knots = selectedOf(current);
    return knots.empty() ? CurveKnot{current, -1} : CurveKnot{current, knots.back()};
}

bool CurveViewPrivate::selectOnly(int curve, int first, int last) {
    const QPointer<CurveView> self(q);
    for (const int each : editableCurves()) {
        if (!self || !hasCurve(each))
            break;
        if (each == curve)
            model->select(each, first, last, CurveModel::SelectOnly);
        else if (!model->selectedKnots(each).empty())
            model->select(each, 0, -1, CurveModel::SelectOnly);
    }
    return !self.isNull();
}

bool CurveViewPrivate::setCurrent(int curve) {
    if (!hasCurve(curve) || curve == current)
        return true;
    const QPointer<CurveView> self(q);
    if (!edit.finish())
        return false;
    endDrag();
    return showCurrent(curve);
}

bool CurveViewPrivate::showCurrent(int curve) {
    if (!hasCurve(curve) || curve == current)
        return true;
    const QPointer<CurveView> self(q);
    current = curve;
    hovered = {};
    q->update();
    Q_EMIT q->currentCurveChanged(curve);
    if (self)
        Q_EMIT q->selectionChanged();
    return !self.isNull();
}

// Whether anything changed.
bool CurveViewPrivate::setVisible(int curve, bool shown) {
    const auto index = std::size_t(curve);
    if (index >= hidden.size()) {
        if (shown)
            return false;
        hidden.resize(index + 1, false);
    }
    if (hidden[index] == !shown)
        return false;
    hidden[index] = !shown;
    return true;
}

bool CurveViewPrivate::hasAbility(CurveModel::Ability ability) const {
    return hasCurve(current) && model->abilities(current).testFlag(ability);
}

bool CurveViewPrivate::isUnitSquare(int curve) const {
    const CurveModel::Limits limits = model->limits(curve);
    return limits.lowX == 0.0 && limits.highX == 1.0 && limits.lowY == 0.0 && limits.highY == 1.0;
}

// -- Ranges

void CurveViewPrivate::setPlot(const QRectF& range) {
    const double width = std::max(1.0, q->width() - 2.0 * Margin);
    const double height = std::max(1.0, q->height() - 2.0 * Margin);
    plot = CurvePlot(QRectF(Margin, Margin, width, height), range, scales);
    gridIsCurrent = false;
    q->update();
}

void CurveViewPrivate::relayout() {
    setPlot(visible);
}

void CurveViewPrivate::setScales(const CurvePlot::Scales& wanted) {
    if (wanted.x == scales.x && wanted.y == scales.y && wanted.shadowBase == scales.shadowBase)
        return;
    scales = wanted;
    relayout();
    Q_EMIT q->scalesChanged();
}

QPointF CurveViewPrivate::positionOf(const CurveKnot& knot) const {
    QPointF place;
    model->places(knot.curve, knot.knot, 1, &place);
    return CurvePick::shownAt(scene(), knot.curve, place);
}

QRect CurveViewPrivate::playheadRect(double x) const {
    constexpr int HalfWidth = 8;
    if (!std::isfinite(x))
        return {};
    const double at = std::clamp(plot.toX(x), -double(HalfWidth), q->width() + double(HalfWidth));
    return {int(at) - HalfWidth, 0, 2 * HalfWidth + 1, q->height()};
}

void CurveViewPrivate::setRange(const QRectF& range) {
    const QRectF before = visible;
    visible = limitedCurveRange(range, nominal);
    setPlot(visible);
    if (visible != before)
        Q_EMIT q->visibleRangeChanged(visible);
}

void CurveViewPrivate::zoomAbout(const QPointF& at, double factorX, double factorY) {
    setRange(plot.zoomed(at, factorX, factorY, nominal));
}

// What knots and lines of the visible curves need.
QRectF CurveViewPrivate::bounds() const {
    QRectF all = nominal;
    for (int curve = 0; model && curve < model->count(); ++curve) {
        const int knots = model->knots(curve);
        if (!isVisible(curve) || knots == 0)
            continue;
        const double first = model->knot(curve, 0).x;
        const double last = model->knot(curve, knots - 1).x;
        double low = model->knot(curve, 0).y;
        double high = low;
        if (last > first)
            model->ranges(curve, first, last, 1, &low, &high);
        all = united(all, QRectF(QPointF(first, low), QPointF(last, high)));
    }
    return all;
}

QRectF CurveViewPrivate::selectionBounds() const {
    QRectF all;
    bool isFirst = true;
    for (const CurveKnot& each : selected()) {
        const CurveModel::Knot knot = model->knot(each.curve, each.knot);
        const QRectF place(knot.x, knot.y, 0.0, 0.0);
        all = std::exchange(isFirst, false) ? place : united(all, place);
    }
    return all;
}

QPointF CurveViewPrivate::nudgeStep() const {
    QPointF step(rounded125(visible.width() / StepsInSight),
                 rounded125(visible.height() / StepsInSight));
    const double frame = hasCurve(current) ? model->limits(current).stepX : 0.0;
    if (frame > 0.0)
        step.setX(frame);
    else if (timeAxis)
        step.setX(1.0);
    return step;
}

} // namespace Kestrel::UI
