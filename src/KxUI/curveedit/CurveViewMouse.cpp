#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curveedit/CurvePick_p.h>

#include <QGestureEvent>
#include <QMouseEvent>
#include <QPinchGesture>
#include <QWheelEvent>

#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double ZoomPerNotch = 1.1;
constexpr int Notch = 120;

} // namespace

void CurveViewPrivate::press(const QMouseEvent& event) {
    const CurveHit hit = CurvePick::at(scene(), event.localPos());
    if (event.button() == Qt::LeftButton && hit.part == CurveHit::Knot && setCurrent(hit.curve))
        selectOnly(hit.curve, hit.knot, hit.knot);
}

void CurveViewPrivate::move(const QMouseEvent& event) {
    hover(event.localPos());
}

void CurveViewPrivate::release(const QMouseEvent&) {}

void CurveViewPrivate::doubleClick(const QMouseEvent& event) {
    const CurveKnot knot = knotAt(event.localPos());
    if (event.button() == Qt::LeftButton && knot.isValid())
        resetKnots({knot});
}

void CurveViewPrivate::meetTaken() {}

void CurveViewPrivate::meetChange() {
    edit.finish();
}

void CurveViewPrivate::endDrag() {}

// Without the focus a plain wheel is for whatever scrolls around the view.
bool CurveViewPrivate::wheel(const QWheelEvent& event) {
    const bool controlled = event.modifiers().testFlag(Qt::ControlModifier);
    const bool wanted =
        controlled ? wheelPolicy != WheelPolicy::WheelNever : WheelPolicy::takes(wheelPolicy, q);
    const QPoint angle = event.angleDelta();
    if (!zoomEnabled || !wanted || angle.isNull())
        return false;
    const bool fingers = !event.pixelDelta().isNull() && (angle.x() % Notch || angle.y() % Notch);
    if (fingers && !controlled) {
        setRange(plot.panned(event.pixelDelta(), nominal));
        return true;
    }
    // Shift turns the wheel sideways on some systems.
    const double notches = double(angle.y() != 0 ? angle.y() : angle.x()) / Notch;
    const double factor = std::pow(ZoomPerNotch, notches);
    const bool shifted = event.modifiers().testFlag(Qt::ShiftModifier);
    zoomAbout(event.position(), shifted && !controlled ? 1.0 : factor,
              controlled && !shifted ? 1.0 : factor);
    return true;
}

bool CurveViewPrivate::gesture(const QGestureEvent& event) {
    const auto* pinch = static_cast<QPinchGesture*>(event.gesture(Qt::PinchGesture));
    if (!pinch || !zoomEnabled)
        return false;
    const double factor = pinch->scaleFactor();
    if (std::isfinite(factor) && factor > 0.0)
        zoomAbout(q->mapFromGlobal(pinch->hotSpot().toPoint()), factor, factor);
    return true;
}

CurveKnot CurveViewPrivate::knotAt(const QPointF& at) const {
    const CurveHit hit = CurvePick::knotAt(scene(), at);
    return hit ? CurveKnot{hit.curve, hit.knot} : CurveKnot();
}

void CurveViewPrivate::setHovered(const CurveKnot& knot) {
    if (std::exchange(hovered, knot) != knot)
        q->update();
}

void CurveViewPrivate::hover(const QPointF& at) {
    const CurveHit hit = CurvePick::at(scene(), at);
    const bool grabs = hit.part == CurveHit::Knot || hit.isHandle();
    q->setCursor(grabs                ? Qt::SizeAllCursor
                 : pressAdds() || hit ? Qt::CrossCursor
                                      : Qt::ArrowCursor);
    setHovered(hit.part == CurveHit::Knot ? CurveKnot{hit.curve, hit.knot} : CurveKnot());
}

bool CurveViewPrivate::pressAdds() const {
    return !othersEditable && pressOffLine == CurveView::Adds;
}

// What the menu is about. Beside all knots that is the curve where a press adds, else what is
// selected.
bool CurveViewPrivate::selectForMenu(const QPointF& at) {
    const CurveKnot knot = knotAt(at);
    if (!knot.isValid())
        return !pressAdds() || selectOnly(-1, 0, -1);
    return model->knot(knot.curve, knot.knot).selected || selectOnly(knot);
}

} // namespace Kestrel::UI
