#include <KxUI/picker/TrackBall_p.h>

#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/picker/TrackBallAccessible_p.h>

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr double KeyWay = 0.01; // from the middle to the rim
constexpr double TitleGap = 2.0;

constexpr double OffsetRange = 0.25;
constexpr double GainRange = 1.0;

} // namespace

TrackBallPrivate::TrackBallPrivate(TrackBall* ball)
    : q(ball)
    , bracket(
          ball, [this] { return value; }, [this](const TrackBallValue& wanted) { store(wanted); },
          [ball](const TrackBallValue& wanted) { Q_EMIT ball->valueEdited(wanted.factors); }) {
    value = scale().neutralValue();
}

TrackBallScale TrackBallPrivate::scale() const {
    const bool isGain = mode == TrackBall::Gain;
    return {mode, range.value_or(isGain ? GainRange : OffsetRange),
            neutral.value_or(isGain ? 1.0 : 0.0), rotation};
}

double TrackBallPrivate::titleHeight() const {
    return title.isEmpty() ? 0.0 : std::ceil(QFontMetricsF(q->font()).height()) + TitleGap;
}

TrackBallGeometry TrackBallPrivate::geometry() const {
    return TrackBallGeometry::of(q->size(), titleHeight());
}

TrackBallScene TrackBallPrivate::scene() const {
    return {geometry(), scale(), value.pose, sensitivity};
}

TrackBallInput TrackBallPrivate::inputOf(const QMouseEvent& event) {
    return {event.localPos(), event.modifiers()};
}

void TrackBallPrivate::store(const TrackBallValue& wanted) {
    const bool isChanged = !(wanted == value);
    value = wanted;
    isTouched = true;
    if (!isChanged)
        return;
    q->update();
    const QPointer<TrackBall> alive(q);
    tellAccessible();
    if (alive)
        Q_EMIT q->factorsChanged(wanted.factors);
}

// An echo has lost the digits of the pose.
void TrackBallPrivate::setByHost(const TrackBallValue& wanted) {
    bracket.hostSet(wanted);
    store(wanted == value ? value : wanted);
}

void TrackBallPrivate::rescale() {
    value = isTouched ? scale().valueOf(value.factors) : scale().neutralValue();
    q->update();
    const QPointer<TrackBall> alive(q);
    tellAccessible();
    if (alive)
        Q_EMIT q->scaleChanged();
    if (alive)
        Q_EMIT q->factorsChanged(value.factors);
}

void TrackBallPrivate::tellAccessible() {
    if (QAccessible::isActive())
        TrackBallAccessible::tellValue(q);
}

bool TrackBallPrivate::isDragged(TrackBallDrag::Kind kind) const {
    return bracket.gesture() == EditGestures::Drag && m_drag.kind() == kind;
}

void TrackBallPrivate::show(const TrackBallPose& pose) {
    bracket.change(scale().valueOf(pose));
}

bool TrackBallPrivate::press(const QMouseEvent& event) {
    const TrackBallInput input = inputOf(event);
    if (TrackBallDrag::kindFor(geometry(), input.mouse, event.button()) == TrackBallDrag::None)
        return false;
    if (bracket.beginDrag(event.button())) {
        m_before = value;
        m_drag.press(scene(), input, event.button());
        q->update();
    }
    return true;
}

void TrackBallPrivate::move(const QMouseEvent& event) {
    if (bracket.gesture() != EditGestures::Drag) {
        hover(geometry().partAt(event.localPos()));
        return;
    }
    // A host that keeps its value refuses the step only: slow movements add up until one gets
    // through.
    const std::optional<TrackBallValue> answered = bracket.takeRebase();
    if (answered && !(*answered == m_before))
        m_drag.rebase(scene());
    m_before = value;
    show(m_drag.move(scene(), inputOf(event)));
}

void TrackBallPrivate::release() {
    m_drag.end();
    q->update();
    bracket.finish();
}

bool TrackBallPrivate::turn(const QWheelEvent& event) {
    if (event.angleDelta().y() == 0)
        return false;
    const QPointer<TrackBall> alive(q);
    const double steps = StepsPerNotch * EditModifiers::factor(event.modifiers());
    const int notches = bracket.turnWheel(event);
    if (alive && notches != 0) {
        TrackBallPose pose = value.pose;
        pose.master = scale().masterAfter(pose, steps * notches);
        show(pose);
    }
    return true;
}

bool TrackBallPrivate::isOwnKey(const QKeyEvent& event) {
    const auto others = event.modifiers() & ~(Qt::ShiftModifier | Qt::ControlModifier |
                                              Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (others != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return true;
    default:
        return false;
    }
}

TrackBallPose TrackBallPrivate::posed(const QKeyEvent& event) const {
    const double factor = EditModifiers::factor(event.modifiers());
    TrackBallPose pose = value.pose;
    switch (event.key()) {
    case Qt::Key_Left:
        pose.balance.rx() -= KeyWay * factor;
        break;
    case Qt::Key_Right:
        pose.balance.rx() += KeyWay * factor;
        break;
    case Qt::Key_Up:
        pose.balance.ry() += KeyWay * factor;
        break;
    case Qt::Key_Down:
        pose.balance.ry() -= KeyWay * factor;
        break;
    case Qt::Key_PageUp:
        pose.master = scale().masterAfter(pose, StepsPerNotch * factor);
        break;
    case Qt::Key_PageDown:
        pose.master = scale().masterAfter(pose, -StepsPerNotch * factor);
        break;
    default:
        return resetPose(true, true);
    }
    return pose;
}

void TrackBallPrivate::pressKey(const QKeyEvent& event) {
    if (bracket.beginKey(event) && bracket.gesture() == EditGestures::Keys)
        show(posed(event));
}

TrackBallPose TrackBallPrivate::resetPose(bool balance, bool master) const {
    const TrackBallPose neutralPose = scale().neutralValue().pose;
    TrackBallPose pose = value.pose;
    if (balance)
        pose.balance = QPointF();
    if (master) {
        // A gain that is shown as an offset is none any more once all of it is reset.
        if (balance)
            return neutralPose;
        pose.master = neutralPose.master;
    }
    return pose;
}

void TrackBallPrivate::editOnce(const TrackBallPose& pose) {
    bracket.editOnce(scale().valueOf(pose));
}

void TrackBallPrivate::hover(TrackBallGeometry::Part part) {
    if (std::exchange(m_hovered, part) != part)
        q->update();
}

} // namespace Kestrel::UI
