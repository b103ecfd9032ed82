#include <KxUI/time/JogWheel.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int Notch = 120;         // eighths of a degree
constexpr double ValuesATurn = 40; // how far a whole turn of the drawn wheel counts
constexpr double Turn = 6.283185307179586;

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

JogWheel::JogWheel(QWidget* parent)
    : QWidget(parent) {
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

void JogWheel::setValue(int value) {
    setCandidate(value);
}

void JogWheel::setRange(int minimum, int maximum) {
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    setCandidate(m_value);
}

void JogWheel::setSensitivity(float sensitivity) {
    if (std::isfinite(sensitivity))
        m_sensitivity = sensitivity;
}

void JogWheel::setCandidate(double value) {
    // Clamped before it becomes an integer: a drag may reach far beyond 32 bits.
    const double clamped =
        std::clamp(value, static_cast<double>(m_minimum), static_cast<double>(m_maximum));
    const int whole = static_cast<int>(clamped);
    if (whole == m_value)
        return;
    m_value = whole;
    update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(this, whole);
        QAccessible::updateAccessibility(&changed);
    }
    Q_EMIT valueChanged(whole);
}

void JogWheel::mousePressEvent(QMouseEvent* event) {
    m_pressX = event->x();
    m_pressValue = m_value;
}

void JogWheel::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton)
        return;
    const float moved = static_cast<float>(event->x() - m_pressX) * m_sensitivity;
    setCandidate(static_cast<double>(m_pressValue) + static_cast<double>(moved));
}

void JogWheel::wheelEvent(QWheelEvent* event) {
    m_wheelRest += event->angleDelta().y();
    const int notches = m_wheelRest / Notch;
    m_wheelRest -= notches * Notch;
    setCandidate(static_cast<double>(m_value) + notches);
    event->accept();
}

void JogWheel::keyPressEvent(QKeyEvent* event) {
    double step = 0;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        step = -1;
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        step = 1;
        break;
    case Qt::Key_PageDown:
        step = -10;
        break;
    case Qt::Key_PageUp:
        step = 10;
        break;
    case Qt::Key_Home:
        setCandidate(m_minimum);
        return;
    case Qt::Key_End:
        setCandidate(m_maximum);
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    setCandidate(m_value + step);
}

void JogWheel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    const qreal radius = (qMin(width(), height()) - 2) / 2.0;
    if (radius <= 1)
        return;
    const QPointF middle = QRectF(rect()).center();
    painter.setPen(
        QPen(hasFocus() ? colors.color(QPalette::Highlight) : colors.color(QPalette::Text),
             hasFocus() ? 1.6 : 1.0));
    painter.setBrush(colors.color(QPalette::Button));
    painter.drawEllipse(middle, radius - 0.5, radius - 0.5);

    // The dimple goes round with the value, so that a turn of the wheel can be seen.
    const double angle = Turn * std::fmod(m_value, ValuesATurn) / ValuesATurn;
    const QPointF dimple = middle + QPointF(std::sin(angle), -std::cos(angle)) * (radius * 0.58);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.color(isEnabled() ? QPalette::Text : QPalette::Mid));
    painter.drawEllipse(dimple, radius * 0.2, radius * 0.2);
}

} // namespace Kestrel::UI
