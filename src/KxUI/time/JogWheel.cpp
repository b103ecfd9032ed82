#include <KxUI/time/JogWheel.h>

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/kit/EscapeWatch_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/kit/WheelNotches_p.h>
#include <KxUI/time/JogWheelDrag_p.h>
#include <KxUI/time/JogWheelPlan_p.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <optional>

namespace Kestrel::UI {

struct JogWheel::Private {
    explicit Private(JogWheel* owner)
        : q(owner)
        , escape([this] { takeBack(drag.takeBack()); })
        , bracket(
              owner, [this] { return value; }, [this](int edited) { showEdited(edited); }) {}

    JogWheel* q;
    int minimum = 0;
    int maximum = 1000;
    int value = 0;
    float sensitivity = 0.3F;
    JogWheelDrag drag;
    EscapeWatch escape;
    WheelNotches wheel;
    EditBracket<JogWheel, int> bracket;

    int limited(double candidate) const;
    void show(int limitedValue);
    void set(int limitedValue);
    void edit(double candidate);
    void showEdited(int edited);
    void takeBack(const std::optional<double>& start);
    void cancel();
};

class JogWheelAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit JogWheelAccessible(JogWheel* wheel)
        : QAccessibleWidget(wheel, QAccessible::Dial) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Value ? QString::number(wheel()->value())
                                          : QAccessibleWidget::text(text);
    }

    QVariant currentValue() const override { return wheel()->value(); }
    void setCurrentValue(const QVariant& value) override {
        JogWheel::Private& data = *wheel()->m;
        data.bracket.editOnce(data.limited(value.toInt()));
    }
    QVariant maximumValue() const override { return wheel()->maximum(); }
    QVariant minimumValue() const override { return wheel()->minimum(); }
    QVariant minimumStepSize() const override { return 1; }

private:
    JogWheel* wheel() const { return static_cast<JogWheel*>(widget()); }
};

namespace {

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::JogWheel"))
        return new JogWheelAccessible(static_cast<JogWheel*>(object));
    return nullptr;
}

} // namespace

JogWheel::JogWheel(QWidget* parent)
    : QWidget(parent)
    , m(std::make_unique<Private>(this)) {
    static const bool installed = (QAccessible::installFactory(makeAccessible), true);
    Q_UNUSED(installed)
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(tr("Jog wheel"));
}

JogWheel::~JogWheel() = default;

QSize JogWheel::sizeHint() const {
    return QSize(22, 22);
}

int JogWheel::value() const {
    return m->value;
}

void JogWheel::setValue(int value) {
    KXUI_INTERFACE_THREAD(this);
    m->set(m->limited(value));
}

bool JogWheel::isEditing() const {
    return m->bracket.isEditing();
}

void JogWheel::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    m->bracket.cancel();
}

void JogWheel::setRange(int minimum, int maximum) {
    KXUI_INTERFACE_THREAD(this);
    maximum = std::max(minimum, maximum);
    const QPointer<JogWheel> guard(this);
    if (minimum != m->minimum || maximum != m->maximum) {
        m->minimum = minimum;
        m->maximum = maximum;
        Q_EMIT rangeChanged(minimum, maximum);
    }
    if (guard)
        m->set(m->limited(m->value));
}

void JogWheel::setMinimum(int minimum) {
    KXUI_INTERFACE_THREAD(this);
    setRange(minimum, m->maximum);
}

int JogWheel::minimum() const {
    return m->minimum;
}

void JogWheel::setMaximum(int maximum) {
    KXUI_INTERFACE_THREAD(this);
    setRange(std::min(m->minimum, maximum), maximum);
}

int JogWheel::maximum() const {
    return m->maximum;
}

void JogWheel::setSensitivity(float sensitivity) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isfinite(sensitivity) || sensitivity == m->sensitivity)
        return;
    m->sensitivity = sensitivity;
    Q_EMIT sensitivityChanged(sensitivity);
}

float JogWheel::sensitivity() const {
    return m->sensitivity;
}

// Limited before it becomes an integer: a drag may reach far beyond 32 bits.
int JogWheel::Private::limited(double candidate) const {
    return static_cast<int>(
        std::clamp(candidate, static_cast<double>(minimum), static_cast<double>(maximum)));
}

void JogWheel::Private::show(int limitedValue) {
    if (limitedValue == value)
        return;
    value = limitedValue;
    q->update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(q, limitedValue);
        QAccessible::updateAccessibility(&changed);
    }
    Q_EMIT q->valueChanged(limitedValue);
}

void JogWheel::Private::set(int limitedValue) {
    bracket.hostSet(limitedValue);
    show(limitedValue);
}

void JogWheel::Private::edit(double candidate) {
    bracket.change(limited(candidate));
}

void JogWheel::Private::showEdited(int edited) {
    if (bracket.gesture() == EditGestures::NoGesture) { // taken back, or something else began
        drag.takeBack();
        escape.setActive(false);
    }
    show(edited);
}

void JogWheel::Private::takeBack(const std::optional<double>& start) {
    escape.setActive(drag.isActive());
    if (start)
        bracket.cancel();
}

bool JogWheel::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isSliderKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return m->bracket.takes(event) || QWidget::event(event);
}

void JogWheel::mousePressEvent(QMouseEvent* event) {
    const std::optional<double> start = m->drag.press(event->x(), event->button(), m->value);
    if (m->drag.isActive() && !m->bracket.beginDrag(Qt::NoButton))
        return;
    m->takeBack(start);
}

void JogWheel::mouseMoveEvent(QMouseEvent* event) {
    const auto candidate = m->drag.move(event->x(), event->buttons(), m->sensitivity);
    m->escape.setActive(m->drag.isActive());
    if (candidate)
        m->edit(*candidate);
    else if (m->bracket.gesture() == EditGestures::Drag && !m->drag.isActive())
        m->bracket.finish();
}

void JogWheel::mouseReleaseEvent(QMouseEvent* event) {
    m->drag.release(event->button());
    m->escape.setActive(m->drag.isActive());
    if (!m->drag.isActive())
        m->bracket.finish();
}

void JogWheel::contextMenuEvent(QContextMenuEvent* event) {
    // The press of the right button that took a drag back asks for no menu.
    event->setAccepted(m->drag.isHeld());
}

// No release comes to a wheel that is hidden or disabled.
void JogWheel::Private::cancel() {
    drag.cancel();
    escape.setActive(false);
}

void JogWheel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        m->cancel();
    QWidget::changeEvent(event);
}

void JogWheel::hideEvent(QHideEvent* event) {
    m->cancel();
    QWidget::hideEvent(event);
}

void JogWheel::wheelEvent(QWheelEvent* event) {
    const int notches = m->wheel.add(event->angleDelta().y());
    event->accept();
    if (m->bracket.beginWheel())
        m->edit(static_cast<double>(m->value) + notches);
}

void JogWheel::keyPressEvent(QKeyEvent* event) {
    const auto candidate = jogWheelKey(event->key(), m->value, m->minimum, m->maximum);
    if (!candidate)
        QWidget::keyPressEvent(event);
    else if (m->bracket.beginKey(*event))
        m->edit(*candidate);
}

void JogWheel::paintEvent(QPaintEvent*) {
    const JogWheelPlan plan = JogWheelPlan::of(rect(), m->value);
    if (plan.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    painter.setPen(
        QPen(hasFocus() ? colors.color(QPalette::Highlight) : colors.color(QPalette::Text),
             hasFocus() ? 1.6 : 1.0));
    painter.setBrush(colors.color(QPalette::Button));
    painter.drawEllipse(plan.wheel);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.color(isEnabled() ? QPalette::Text : QPalette::Mid));
    painter.drawEllipse(plan.dimple);
}

} // namespace Kestrel::UI
