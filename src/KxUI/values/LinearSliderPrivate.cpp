#include <KxUI/values/LinearSlider_p.h>

#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int FirstRepeat = 500; // milliseconds, as those of Qt's sliders
constexpr int NextRepeats = 50;
constexpr int PagesPerSteps = 10;

// What begins a number, or asks for the field to write one.
bool isEntryKey(const QKeyEvent& event) {
    const QString text = event.text();
    return event.key() == Qt::Key_F2 ||
           (text.size() == 1 && !event.modifiers().testFlag(Qt::ControlModifier) &&
            (text[0].isDigit() || QStringLiteral("+-.,=(").contains(text[0])));
}

} // namespace

LinearSliderPrivate::~LinearSliderPrivate() = default;

void LinearSliderPrivate::attach(LinearSlider* slider) {
    q = slider;
    bracket.emplace(
        slider, [this] { return value; }, [this](double edited) { store(edited); });
}

const SliderGeometry& LinearSliderPrivate::geometry() {
    if (m_geometry)
        return *m_geometry;
    m_geometry = plan();
    m_snaps.clear();
    const SliderScale& scale = m_geometry->scale;
    const auto add = [&](double point) {
        if (std::isfinite(point) && scale.clamped(point) == point)
            m_snaps.push_back(point + 0.0);
    };
    add(defaultValue);
    add(centre);
    std::for_each(snapPoints.begin(), snapPoints.end(), add);
    for (const SliderTick& tick : m_geometry->ticks.ticks) {
        if (tick.isLong)
            add(tick.value);
    }
    return *m_geometry;
}

void LinearSliderPrivate::forgetGeometry() {
    m_geometry.reset();
    if (bracket->gesture() == EditGestures::Drag)
        m_drag.rebase(scene());
}

void LinearSliderPrivate::relayout() {
    forgetGeometry();
    q->updateGeometry();
    q->update();
}

bool LinearSliderPrivate::isForward() const {
    return isHorizontal() && q->layoutDirection() == Qt::LeftToRight;
}

QRectF LinearSliderPrivate::handleArea(double shown) {
    return geometry().handle(shown);
}

void LinearSliderPrivate::store(double newValue) {
    if (newValue == value)
        return;
    // What lies between the old place and the new one is filled, or is so no more.
    const QRectF area = handleArea(value) | handleArea(newValue);
    value = newValue;
    q->update(area.toAlignedRect().adjusted(-1, -1, 1, 1));
    tellAccessibleValue(q, newValue);
    Q_EMIT q->valueChanged(newValue);
}

void LinearSliderPrivate::setByHost(double newValue) {
    bracket->hostSet(newValue);
    store(newValue);
}

void LinearSliderPrivate::setStep(double& member, double step) {
    if (!std::isfinite(step) || step < 0.0 || member == step)
        return;
    member = step;
    relayout();
    Q_EMIT q->handlingChanged();
}

double LinearSliderPrivate::step() const {
    const double wanted = singleStep > 0.0 ? singleStep : automaticStep(minimum, maximum);
    return std::max(wanted, grid);
}

double LinearSliderPrivate::page() const {
    return pageStep > 0.0 ? pageStep : step() * PagesPerSteps;
}

double LinearSliderPrivate::editable(double wanted) const {
    return std::clamp(onGrid(std::clamp(wanted, minimum, maximum), grid), minimum, maximum);
}

std::optional<double> LinearSliderPrivate::stepped(double step, double count) {
    // From the end that the handle stands at, but not back to it from beyond.
    const double from = std::clamp(value, minimum, maximum);
    const double to = editable(steppedNumber(from, withoutDust(std::max(step, grid)), count));
    return to == from ? std::nullopt : std::optional(to);
}

std::optional<double> LinearSliderPrivate::defaultInRange() const {
    const bool isInside = defaultValue >= minimum && defaultValue <= maximum;
    return isInside ? std::optional(defaultValue) : std::nullopt;
}

void LinearSliderPrivate::changeTo(const std::optional<double>& wanted) {
    if (wanted)
        bracket->change(*wanted);
}

SliderScene LinearSliderPrivate::scene() {
    const SliderScale& scale = geometry().scale;
    return {scale, value, grid, &m_snaps};
}

SliderInput LinearSliderPrivate::inputOf(const QMouseEvent& event) {
    SliderInput input;
    input.pixel = geometry().along(event.localPos());
    input.factor = EditModifiers::factor(event.modifiers());
    // Window managers take Alt at a press for themselves.
    input.snapsOtherwise =
        event.modifiers().testFlag(Qt::AltModifier) && event.type() == QEvent::MouseMove;
    return input;
}

void LinearSliderPrivate::press(const QMouseEvent& event) {
    const SliderInput input = inputOf(event);
    const QPointer<LinearSlider> alive(q);
    if (!bracket->beginDrag(event.button()) || !isDragged())
        return;
    m_pressedHandle = geometry().handle(value).contains(event.localPos());
    m_pressPixel = input.pixel;
    m_before = value;
    m_drag.end();
    if (m_pressedHandle || input.factor != 1.0) {
        m_drag.grip(scene(), input);
    } else if (pressMode == LinearSlider::JumpToPress || event.button() == Qt::MiddleButton) {
        changeTo(m_drag.jump(scene(), input));
    } else {
        m_paging.start(FirstRepeat, q);
        stepToPress();
    }
    if (alive)
        q->update();
}

void LinearSliderPrivate::move(const QMouseEvent& event) {
    if (!isDragged())
        return;
    m_pressPixel = geometry().along(event.localPos());
    if (!m_drag.isActive())
        return;
    // A host that keeps its value refuses the step only: slow movements add up until one gets
    // through.
    const std::optional<double> answered = bracket->takeRebase();
    if (answered && *answered != m_before)
        m_drag.rebase(scene());
    m_before = value;
    changeTo(m_drag.move(scene(), inputOf(event)));
}

void LinearSliderPrivate::release() {
    m_paging.stop();
    m_drag.end();
    q->update();
    bracket->finish();
}

void LinearSliderPrivate::stepToPress() {
    const SliderScale& scale = geometry().scale;
    const QRectF handle = geometry().handle(value);
    const double from = isHorizontal() ? handle.left() : handle.top();
    if (m_pressPixel >= from && m_pressPixel <= from + geometry().handleAlong)
        return;
    const double target = scale.valueOf(scale.partAt(m_pressPixel));
    const double direction = target < value ? -1.0 : 1.0;
    std::optional<double> wanted = stepped(page(), direction);
    if (wanted && (*wanted - target) * direction > 0.0)
        wanted = editable(target);
    changeTo(wanted);
}

bool LinearSliderPrivate::page(int timer) {
    if (timer != m_paging.timerId())
        return false;
    if (!isDragged()) {
        m_paging.stop();
        return true;
    }
    m_paging.start(NextRepeats, q);
    stepToPress();
    return true;
}

bool LinearSliderPrivate::isOwnKey(const QKeyEvent& event) const {
    const auto strange = event.modifiers() & ~(Qt::ShiftModifier | Qt::ControlModifier |
                                               Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (strange != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return true;
    case Qt::Key_S:
        return isDragged() && m_drag.isActive();
    default:
        return isEntryKey(event);
    }
}

std::optional<double> LinearSliderPrivate::keyTarget(const QKeyEvent& event) {
    const double factor = EditModifiers::factor(event.modifiers());
    const double rightwards = isHorizontal() && !isForward() ? -1.0 : 1.0;
    switch (event.key()) {
    case Qt::Key_Left:
        return stepped(step() * factor, -rightwards);
    case Qt::Key_Right:
        return stepped(step() * factor, rightwards);
    case Qt::Key_Up:
        return stepped(step() * factor, 1.0);
    case Qt::Key_Down:
        return stepped(step() * factor, -1.0);
    case Qt::Key_PageUp:
        return stepped(page() * factor, 1.0);
    case Qt::Key_PageDown:
        return stepped(page() * factor, -1.0);
    case Qt::Key_Home:
        return minimum;
    case Qt::Key_End:
        return maximum;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return defaultInRange();
    default:
        return std::nullopt;
    }
}

void LinearSliderPrivate::pressKey(const QKeyEvent& event) {
    if (event.key() == Qt::Key_S) {
        m_drag.toggleSnapping();
        return;
    }
    if (isEntryKey(event)) {
        if (!isDragged())
            openEntry(event);
        return;
    }
    if (bracket->beginKey(event) && bracket->gesture() == EditGestures::Keys)
        changeTo(keyTarget(event));
}

bool LinearSliderPrivate::turn(const QWheelEvent& event) {
    if (event.angleDelta().y() == 0)
        return false;
    const QPointer<LinearSlider> alive(q);
    const double amount = step() * EditModifiers::factor(event.modifiers());
    const int notches = bracket->turnWheel(event);
    if (alive && notches != 0)
        changeTo(stepped(amount, notches));
    return true;
}

void LinearSliderPrivate::openEntry(const QKeyEvent& key) {
    if (m_entry || !bracket->finish())
        return;
    m_entry = new SliderEntry(value, suffix, q);
    QObject::connect(m_entry, &SliderEntry::taken, q,
                     [this](double number) { bracket->editOnce(editable(number)); });
    m_entry->open(geometry().handle(value).center().toPoint(), key);
}

void LinearSliderPrivate::hover(const QPoint& at) {
    const bool now = q->underMouse() && geometry().handle(value).contains(at);
    if (std::exchange(m_hovered, now) != now)
        q->update(handleArea(value).toAlignedRect());
}

QString LinearSliderPrivate::numberText(double number) const {
    QLocale locale = q->locale();
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    return locale.toString(number, 'g', 6) + suffix;
}

} // namespace Kestrel::UI
