#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/OwnKeys_p.h>

#include <QAction>
#include <QKeyEvent>
#include <QMenu>

namespace Kestrel::UI {
namespace {

constexpr double KeyZoom = 1.25;

bool isControlled(const QKeyEvent& event, std::initializer_list<int> keys) {
    return event.modifiers() == Qt::ControlModifier &&
           std::find(keys.begin(), keys.end(), event.key()) != keys.end();
}

// Which way an arrow key goes; null for other keys.
QPointF directionOf(int key) {
    switch (key) {
    case Qt::Key_Left:
        return {-1.0, 0.0};
    case Qt::Key_Right:
        return {1.0, 0.0};
    case Qt::Key_Up:
        return {0.0, 1.0};
    case Qt::Key_Down:
        return {0.0, -1.0};
    default:
        return {};
    }
}

bool isArrow(const QKeyEvent& event) {
    const Qt::KeyboardModifiers others =
        event.modifiers() & ~(Qt::ShiftModifier | Qt::ControlModifier | Qt::KeypadModifier);
    return others == Qt::NoModifier && !directionOf(event.key()).isNull();
}

} // namespace

// Keys that the window would take for its own.
bool CurveViewPrivate::isOwnKey(const QKeyEvent& event) const {
    if (event.key() == Qt::Key_Escape)
        return drag.isActive();
    if (isArrow(event) ||
        isControlled(event, {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_D}))
        return true;
    if (zoomEnabled &&
        UI::isOwnKey(event, {Qt::Key_F, Qt::Key_0, Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Minus}))
        return true;
    const bool shape =
        event.key() >= Qt::Key_1 && event.key() <= Qt::Key_6 && hasAbility(CurveModel::HasShapes);
    return UI::isOwnKey(event, {Qt::Key_Home, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Insert,
                                Qt::Key_S, Qt::Key_T, Qt::Key_BracketLeft, Qt::Key_BracketRight,
                                Qt::Key_Return, Qt::Key_Enter}) ||
           (shape && UI::isOwnKey(event, {event.key()}));
}

bool CurveViewPrivate::pressKey(const QKeyEvent& event) {
    if (!isOwnKey(event))
        return false;
    if (edit.gesture() == EditGestures::Drag) {
        pressInDrag(event.key());
        return true;
    }
    if (isArrow(event))
        nudge(event, directionOf(event.key()));
    else if (event.modifiers().testFlag(Qt::ControlModifier))
        pressControlled(event.key());
    else if (event.key() >= Qt::Key_1 && event.key() <= Qt::Key_6)
        q->setSelectedShape(event.key() - Qt::Key_1);
    else if (!pressEditing(event.key()))
        pressLooking(event.key());
    return true;
}

// The mouse has what the others would change.
void CurveViewPrivate::pressInDrag(int key) {
    const QPointer<CurveView> self(q);
    if (key == Qt::Key_Escape) {
        takeDragBack();
    } else if (key == Qt::Key_S) {
        q->setSnapEnabled(!snapEnabled);
        if (self && drag.isActive())
            drive(lastInput);
    }
}

void CurveViewPrivate::pressControlled(int key) {
    switch (key) {
    case Qt::Key_A:
        return q->selectAll();
    case Qt::Key_C:
        return q->copy();
    case Qt::Key_X:
        return q->cut();
    case Qt::Key_V:
        return q->paste();
    default:
        return q->duplicateSelected();
    }
}

bool CurveViewPrivate::pressEditing(int key) {
    switch (key) {
    case Qt::Key_Home:
        q->resetSelected();
        return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        q->deleteSelected();
        return true;
    case Qt::Key_Insert:
        insertBehind();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT q->numbersRequested();
        return true;
    default:
        return false;
    }
}

void CurveViewPrivate::pressLooking(int key) {
    switch (key) {
    case Qt::Key_F:
        return q->showSelection();
    case Qt::Key_0:
        return q->showAll();
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return q->zoom(KeyZoom);
    case Qt::Key_Minus:
        return q->zoom(1.0 / KeyZoom);
    case Qt::Key_S:
        return q->setSnapEnabled(!snapEnabled);
    case Qt::Key_T:
        return q->setFrameVisible(!frameVisible);
    case Qt::Key_BracketLeft:
        return stepCurve(-1);
    default:
        return stepCurve(1);
    }
}

// Hidden ones are passed over.
void CurveViewPrivate::stepCurve(int by) {
    for (int curve = current + by; hasCurve(curve); curve += by) {
        if (isVisible(curve)) {
            setCurrent(curve);
            return;
        }
    }
}

// To the next knot or the previous one; false where there is none, so that the focus goes on.
bool CurveViewPrivate::walk(bool next) {
    if (!hasCurve(current) || edit.gesture() == EditGestures::Drag)
        return false;
    const int wanted = focused().knot + (next ? 1 : -1);
    if (wanted < 0 || wanted >= model->knots(current))
        return false;
    selectOnly({current, wanted});
    return true;
}

QMenu* CurveViewPrivate::makeMenu() {
    auto* menu = new QMenu(q);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const int count = selectedCount();
    const bool canRemove = count > 0 && hasAbility(CurveModel::CanRemove) &&
                           model->knots(current) > model->limits(current).fewestKnots;
    const auto add = [&](const QString& text, void (CurveView::*slot)(), bool enabled) {
        QAction* action = menu->addAction(text, q, slot);
        action->setEnabled(enabled);
        return action;
    };
    add(count > 1 ? CurveView::tr("Delete Knots") : CurveView::tr("Delete Knot"),
        &CurveView::deleteSelected, canRemove);
    add(count > 1 ? CurveView::tr("Reset Knots") : CurveView::tr("Reset Knot"),
        &CurveView::resetSelected, count > 0);
    menu->addSeparator();
    add(CurveView::tr("Reset Curve"), &CurveView::resetCurve, hasCurve(current));
    menu->addSeparator();
    add(CurveView::tr("Cut"), &CurveView::cut, canRemove);
    add(CurveView::tr("Copy"), &CurveView::copy, hasCurve(current));
    add(CurveView::tr("Paste"), &CurveView::paste, hasCurve(current));
    add(CurveView::tr("Select All"), &CurveView::selectAll, hasCurve(current));
    menu->addSeparator();
    addShapes(menu, count > 0);
    QAction* snap = menu->addAction(CurveView::tr("Snap"), q, &CurveView::setSnapEnabled);
    snap->setCheckable(true);
    snap->setChecked(snapEnabled);
    QAction* frame = menu->addAction(CurveView::tr("Frame"), q, &CurveView::setFrameVisible);
    frame->setCheckable(true);
    frame->setChecked(frameVisible);
    menu->addSeparator();
    add(CurveView::tr("Show Selection"), &CurveView::showSelection, zoomEnabled && count > 0);
    add(CurveView::tr("Show All"), &CurveView::showAll, zoomEnabled);
    return menu;
}

void CurveViewPrivate::addShapes(QMenu* menu, bool enabled) {
    if (!hasAbility(CurveModel::HasShapes))
        return;
    QMenu* shapes = menu->addMenu(CurveView::tr("Shape"));
    shapes->setEnabled(enabled);
    const QString names[] = {CurveView::tr("Constant"), CurveView::tr("Linear"),
                             CurveView::tr("Smooth"),   CurveView::tr("Monotone"),
                             CurveView::tr("Natural"),  CurveView::tr("Free")};
    const CurveKnot shown = focused();
    const int present = shown.isValid() ? model->knot(shown.curve, shown.knot).shape : -1;
    int shape = 0;
    for (const QString& name : names) {
        QAction* action =
            shapes->addAction(name, q, [view = q, shape] { view->setSelectedShape(shape); });
        action->setCheckable(true);
        action->setChecked(shape == present);
        ++shape;
    }
}

} // namespace Kestrel::UI
