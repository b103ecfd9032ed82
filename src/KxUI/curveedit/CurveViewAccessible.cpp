#include <KxUI/curveedit/CurveViewAccessible_p.h>

#include <KxUI/curveedit/CurveView_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

CurveViewAccessible::CurveViewAccessible(CurveView* view)
    : QAccessibleWidget(view, QAccessible::Chart) {}

CurveViewAccessible::~CurveViewAccessible() {
    for (const auto& [place, id] : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

CurveView* CurveViewAccessible::view() const {
    return static_cast<CurveView*>(object());
}

void CurveViewAccessible::tellSelection(CurveView* view) {
    if (!QAccessible::isActive())
        return;
    const CurveKnot knot = CurveViewPrivate::of(view)->focused();
    auto* self = dynamic_cast<CurveViewAccessible*>(QAccessible::queryAccessibleInterface(view));
    QAccessibleInterface* const child = self && knot.isValid() ? self->childOf(knot) : nullptr;
    QAccessibleEvent selected(view, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&selected);
    if (!child || !view->hasFocus())
        return;
    QAccessibleEvent focused(child, QAccessible::Focus);
    QAccessible::updateAccessibility(&focused);
}

void CurveViewAccessible::tellValue(CurveView* view) {
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface* const self = QAccessible::queryAccessibleInterface(view);
    QAccessibleValueChangeEvent event(view, self ? self->text(QAccessible::Value) : QString());
    QAccessible::updateAccessibility(&event);
}

std::vector<CurveKnot> CurveViewAccessible::knots() const {
    const CurveViewPrivate& own = *CurveViewPrivate::of(view());
    int count = 0;
    for (const int curve : own.editableCurves())
        count += own.model->knots(curve);
    if (count > MostChildren) {
        std::vector<CurveKnot> selected = own.selected();
        selected.resize(std::min(selected.size(), std::size_t(MostChildren)));
        return selected;
    }
    std::vector<CurveKnot> all;
    for (const int curve : own.editableCurves()) {
        for (int knot = 0; knot < own.model->knots(curve); ++knot)
            all.push_back({curve, knot});
    }
    return all;
}

int CurveViewAccessible::childCount() const {
    return int(knots().size());
}

QAccessibleInterface* CurveViewAccessible::childOf(const CurveKnot& knot) const {
    const auto [found, isNew] = m_children.try_emplace({knot.curve, knot.knot}, 0U);
    if (isNew)
        found->second = QAccessible::registerAccessibleInterface(
            new CurveKnotAccessible(view(), knot.curve, knot.knot));
    return QAccessible::accessibleInterface(found->second);
}

QAccessibleInterface* CurveViewAccessible::child(int index) const {
    const std::vector<CurveKnot> all = knots();
    return index >= 0 && std::size_t(index) < all.size() ? childOf(all[std::size_t(index)])
                                                         : nullptr;
}

int CurveViewAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const knot = dynamic_cast<const CurveKnotAccessible*>(child);
    if (!knot || knot->parent() != this)
        return -1;
    const std::vector<CurveKnot> all = knots();
    const auto found = std::find(all.begin(), all.end(), CurveKnot{knot->curve(), knot->knot()});
    return found == all.end() ? -1 : int(found - all.begin());
}

QAccessibleInterface* CurveViewAccessible::childAt(int x, int y) const {
    const CurveKnot knot =
        CurveViewPrivate::of(view())->knotAt(view()->mapFromGlobal(QPoint(x, y)));
    return knot.isValid() ? childOf(knot) : nullptr;
}

QAccessibleInterface* CurveViewAccessible::focusChild() const {
    const CurveKnot knot = CurveViewPrivate::of(view())->focused();
    return view()->hasFocus() && knot.isValid() ? childOf(knot) : nullptr;
}

QString CurveViewAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && text.isEmpty())
        return CurveView::tr("Curves");
    return kind == QAccessible::Value ? CurveViewPrivate::of(view())->valueText() : text;
}

CurveKnotAccessible::CurveKnotAccessible(CurveView* view, int curve, int knot)
    : m_view(view)
    , m_curve(curve)
    , m_knot(knot) {}

bool CurveKnotAccessible::isValid() const {
    return m_view && CurveViewPrivate::of(m_view)->hasKnot({m_curve, m_knot});
}

QWindow* CurveKnotAccessible::window() const {
    return parent() ? parent()->window() : nullptr;
}

QAccessibleInterface* CurveKnotAccessible::parent() const {
    return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
}

QString CurveKnotAccessible::text(QAccessible::Text kind) const {
    if (!isValid())
        return {};
    const CurveViewPrivate& d = *CurveViewPrivate::of(m_view);
    if (kind == QAccessible::Name)
        return d.knotName({m_curve, m_knot});
    const CurveModel::Knot knot = d.model->knot(m_curve, m_knot);
    return kind == QAccessible::Value ? d.placeText({knot.x, knot.y}) : QString();
}

QRect CurveKnotAccessible::rect() const {
    constexpr int Size = 9;
    if (!isValid())
        return {};
    const QPoint at = CurveViewPrivate::of(m_view)->positionOf({m_curve, m_knot}).toPoint();
    return {m_view->mapToGlobal(at - QPoint(Size / 2, Size / 2)), QSize(Size, Size)};
}

QAccessible::State CurveKnotAccessible::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    const CurveViewPrivate& d = *CurveViewPrivate::of(m_view);
    state.disabled = !m_view->isEnabled();
    state.selectable = state.focusable = state.multiSelectable = !state.disabled;
    state.selected = d.model->knot(m_curve, m_knot).selected;
    state.focused = m_view->hasFocus() && d.focused() == CurveKnot{m_curve, m_knot};
    state.invisible = !m_view->isVisible();
    state.offscreen = !m_view->rect().contains(d.positionOf({m_curve, m_knot}).toPoint());
    return state;
}

void* CurveKnotAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QVariant CurveKnotAccessible::currentValue() const {
    return isValid() ? CurveViewPrivate::of(m_view)->model->knot(m_curve, m_knot).y : QVariant();
}

void CurveKnotAccessible::setCurrentValue(const QVariant& value) {
    bool isNumber = false;
    const double y = value.toDouble(&isNumber);
    if (isValid() && m_view->isEnabled() && isNumber && std::isfinite(y))
        moveTo(*CurveViewPrivate::of(m_view), y);
}

void CurveKnotAccessible::moveTo(CurveViewPrivate& view, double y) {
    const CurveModel::Limits limits = view.model->limits(m_curve);
    const double x = view.model->knot(m_curve, m_knot).x;
    view.moveOnce({{m_curve, m_knot, x, std::clamp(y, limits.lowY, limits.highY)}});
}

QVariant CurveKnotAccessible::maximumValue() const {
    return isValid() ? CurveViewPrivate::of(m_view)->model->limits(m_curve).highY : QVariant();
}

QVariant CurveKnotAccessible::minimumValue() const {
    return isValid() ? CurveViewPrivate::of(m_view)->model->limits(m_curve).lowY : QVariant();
}

QVariant CurveKnotAccessible::minimumStepSize() const {
    return isValid() ? CurveViewPrivate::of(m_view)->nudgeStep().y() : QVariant();
}

QStringList CurveKnotAccessible::actionNames() const {
    return {pressAction()};
}

void CurveKnotAccessible::doAction(const QString& name) {
    if (name == pressAction() && isValid() && m_view->isEnabled())
        CurveViewPrivate::of(m_view)->selectOnly({m_curve, m_knot});
}

} // namespace Kestrel::UI
