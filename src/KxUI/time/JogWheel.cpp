#include <KxUI/time/JogWheel.h>

#include <KxUI/kit/EscapeWatch_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
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
namespace {

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
    void setCurrentValue(const QVariant& value) override { wheel()->setValue(value.toInt()); }
    QVariant maximumValue() const override { return wheel()->maximum(); }
    QVariant minimumValue() const override { return wheel()->minimum(); }
    QVariant minimumStepSize() const override { return 1; }

private:
    JogWheel* wheel() const { return static_cast<JogWheel*>(widget()); }
};

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::JogWheel"))
        return new JogWheelAccessible(static_cast<JogWheel*>(object));
    return nullptr;
}

} // namespace

struct JogWheel::Private {
    explicit Private(JogWheel* owner)
        : q(owner)
        , escape([this] { takeBack(drag.takeBack()); }) {}

    JogWheel* q;
    int minimum = 0;
    int maximum = 1000;
    int value = 0;
    float sensitivity = 0.3F;
    JogWheelDrag drag;
    EscapeWatch escape;
    WheelNotches wheel;

    void setCandidate(double candidate);
    void takeBack(const std::optional<double>& start);
    void cancel();
};

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
    m->setCandidate(value);
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
        m->setCandidate(m->value);
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

void JogWheel::Private::setCandidate(double candidate) {
    // Clamped before it becomes an integer: a drag may reach far beyond 32 bits.
    const double clamped =
        std::clamp(candidate, static_cast<double>(minimum), static_cast<double>(maximum));
    const int whole = static_cast<int>(clamped);
    if (whole == value)
        return;
    value = whole;
    q->update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(q, whole);
        QAccessible::updateAccessibility(&changed);
    }
    Q_EMIT q->valueChanged(whole);
}

void JogWheel::Private::takeBack(const std::optional<double>& start) {
    escape.setActive(drag.isActive());
    if (start)
        setCandidate(*start);
}

void JogWheel::mousePressEvent(QMouseEvent* event) {
    m->takeBack(m->drag.press(event->x(), event->button(), m->value));
}

void JogWheel::mouseMoveEvent(QMouseEvent* event) {
    const auto candidate = m->drag.move(event->x(), event->buttons(), m->sensitivity);
    m->escape.setActive(m->drag.isActive());
    if (candidate)
        m->setCandidate(*candidate);
}

void JogWheel::mouseReleaseEvent(QMouseEvent* event) {
    m->drag.release(event->button());
    m->escape.setActive(m->drag.isActive());
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
    m->setCandidate(static_cast<double>(m->value) + notches);
}

void JogWheel::keyPressEvent(QKeyEvent* event) {
    if (const auto candidate = jogWheelKey(event->key(), m->value, m->minimum, m->maximum))
        m->setCandidate(*candidate);
    else
        QWidget::keyPressEvent(event);
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
