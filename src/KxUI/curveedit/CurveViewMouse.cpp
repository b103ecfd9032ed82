#include <KxUI/curveedit/CurveView_p.h>

#include <KxUI/curveedit/CurvePick_p.h>

#include <QGestureEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPinchGesture>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double ZoomPerNotch = 1.1;
constexpr int Notch = 120;

CurveInput inputOf(const QMouseEvent& event) {
    return {event.localPos(), event.buttons(), event.modifiers(), qint64(event.timestamp())};
}

bool isDragButton(Qt::MouseButton button) {
    return button == Qt::LeftButton || button == Qt::MiddleButton;
}

} // namespace

void CurveViewPrivate::press(const QMouseEvent& event) {
    const QPointer<CurveView> self(q);
    say({});
    if (!self || !model || !isDragButton(event.button()) || !edit.beginDrag(event.button()))
        return;
    lastInput = inputOf(event);
    if (execute(drag.press(scene(), lastInput, event.button())))
        q->update();
}

void CurveViewPrivate::move(const QMouseEvent& event) {
    if (drag.isActive())
        drive(inputOf(event));
    else if (event.buttons() == Qt::NoButton)
        hover(event.localPos());
}

void CurveViewPrivate::drive(const CurveInput& input) {
    const bool snapped = drag.snapX() || drag.snapY();
    lastInput = input;
    if (!execute(drag.move(scene(), input)))
        return;
    // Knots repaint themselves.
    if (snapped || drag.snapX() || drag.snapY() || drag.pulledOut() || !drag.edits() ||
        frameVisible)
        q->update();
    else
        q->update(textRect());
    if (!drag.scrolls(scene()))
        scrollTimer.stop();
    else if (!scrollTimer.isActive())
        scrollTimer.start();
}

void CurveViewPrivate::scroll() {
    if (!drag.isActive() || !drag.scrolls(scene()))
        scrollTimer.stop();
    else if (execute(drag.scroll(scene())))
        drive(lastInput);
}

void CurveViewPrivate::release(const QMouseEvent& event) {
    if (!execute(drag.release(scene(), event.button())) || drag.isActive())
        return;
    scrollTimer.stop();
    q->update();
    if (isDragButton(event.button()))
        edit.finish();
}

void CurveViewPrivate::doubleClick(const QMouseEvent& event) {
    const CurveInput input = inputOf(event);
    const CurveHit hit =
        event.button() == Qt::LeftButton && model ? drag.resetBy(scene(), input) : CurveHit();
    if (hit.isHandle()) {
        const int piece = hit.part == CurveHit::HandleIn ? hit.knot - 1 : hit.knot;
        edit.editOnce(CurveView::tr("slope"), [this, curve = hit.curve, piece] {
            model->setShape(curve, {piece}, int(KeyCurve::Shape::Monotone));
        });
    } else if (hit) {
        resetKnots({{hit.curve, hit.knot}});
    } else if (event.button() == Qt::LeftButton && model && !pressAdds() &&
               !CurvePick::at(scene(), input.mouse)) {
        const QPointF place = plot.toCurve(input.mouse);
        if (canAdd(current) && hasRoom(current, place.x()))
            addOnce(current, place, false);
    } else {
        press(event);
    }
}

void CurveViewPrivate::meetEvent(const QEvent& event, bool taken) {
    if (drag.isActive() && edit.gesture() != EditGestures::Drag) {
        endDrag();
    } else if (taken && event.type() == QEvent::MouseButtonPress) {
        takeDragBack(); // by the right button, which took back what the edit had
    } else if (taken && event.type() == QEvent::MouseButtonRelease) {
        drag.release(scene(), static_cast<const QMouseEvent&>(event).button());
    }
}

void CurveViewPrivate::meetChange() {
    if (drag.isActive())
        execute(drag.modelChanged(scene()));
}

bool CurveViewPrivate::takeDragBack() {
    if (!drag.isActive() || drag.edits())
        return false;
    if (execute(drag.takeBack(scene())))
        q->update();
    return true;
}

void CurveViewPrivate::endDrag() {
    drag.finish();
    scrollTimer.stop();
    q->update();
}

// -- What the drag answers

// Edits that come together are told as one.
bool CurveViewPrivate::execute(const CurveCommands& commands) {
    const QPointer<CurveView> self(q);
    for (auto command = commands.begin(); self && model && command != commands.end();) {
        if (command->isEdit()) {
            const auto end = std::find_if(command, commands.end(),
                                          [](const CurveCommand& each) { return !each.isEdit(); });
            if (!executeEdits(command, end))
                return false;
            command = end;
            continue;
        }
        switch (command->kind) {
        case CurveCommand::SetCurrent:
            showCurrent(command->curve);
            break;
        case CurveCommand::Select:
            if (hasCurve(command->curve))
                model->select(command->curve, command->first, command->last, command->mode);
            break;
        case CurveCommand::ShowRange:
            setRange(command->range);
            break;
        default:
            edit.finish();
            break;
        }
        ++command;
    }
    return !self.isNull();
}

bool CurveViewPrivate::executeEdits(CurveCommands::const_iterator first,
                                    CurveCommands::const_iterator end) {
    const bool adds = first->kind == CurveCommand::Add || first->kind == CurveCommand::AddOnLine;
    int added = -1;
    if (!adds || canExecute(*first)) {
        const QPointer<CurveView> self(q);
        const auto all = [&] {
            for (auto command = first;
                 self && command != end && hasCurve(command->curve < 0 ? current : command->curve);
                 ++command)
                added = change(*command);
        };
        if (!edit.change(dragTitle(), all))
            return false;
    }
    return !adds || execute(drag.added(scene(), added));
}

// Whether a knot has room; says why not.
bool CurveViewPrivate::canExecute(const CurveCommand& command) {
    const QPointer<CurveView> self(q);
    return canAdd(command.curve) && hasRoom(command.curve, command.place.x()) && self;
}

// The index of what was added.
int CurveViewPrivate::change(const CurveCommand& command) {
    switch (command.kind) {
    case CurveCommand::Move:
        model->move(command.moves);
        break;
    case CurveCommand::Add:
        return model->add(command.curve, command.place.x(), command.place.y());
    case CurveCommand::AddOnLine:
        return model->addOnLine(command.curve, command.place.x());
    case CurveCommand::Remove:
        model->remove(command.curve, {command.first});
        break;
    case CurveCommand::Restore:
        model->load(command.curve, command.bytes);
        break;
    case CurveCommand::SetSlopes:
        model->setSlopes(command.curve, command.first, command.place.x(), command.place.y(),
                         command.broken);
        break;
    default:
        break;
    }
    return -1;
}

QString CurveViewPrivate::dragTitle() const {
    switch (drag.what()) {
    case CurveDrag::AddsKnot:
        return CurveView::tr("add knot");
    case CurveDrag::ChangesSlope:
        return CurveView::tr("slope");
    case CurveDrag::ScalesKnots:
        return CurveView::tr("scale");
    default:
        return moveText(std::max(1, drag.count()));
    }
}

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

bool CurveViewPrivate::help(const QHelpEvent& event) const {
    if (drag.isActive() || !CurvePick::isOnSlopeLine(scene(), event.pos()))
        return false;
    constexpr int Around = int(CurvePick::SlopeLength) / 2;
    const QRect here(event.pos() - QPoint(Around, Around), QSize(2 * Around, 2 * Around));
    QToolTip::showText(event.globalPos(), CurveView::tr("The slope follows from the knots"), q,
                       here);
    return true;
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
