#include <KxUI/values/DoubleSpinBoxAccessible_p.h>

#include <KxUI/values/DoubleSpinBox_p.h>

#include <QLineEdit>

#include <cmath>

namespace Kestrel::UI {

DoubleSpinBoxAccessible::DoubleSpinBoxAccessible(DoubleSpinBox* box)
    : RangeAccessible(box, QAccessible::SpinBox) {}

QString DoubleSpinBoxAccessible::valueText() const {
    const QString& problem = box()->d->problem;
    return problem.isNull() ? box()->text() : box()->text() + QStringLiteral(": ") + problem;
}

QString DoubleSpinBoxAccessible::standardName() const {
    return box()->label() ? box()->label()->text().remove(QLatin1Char('&')) : QString();
}

QAccessible::State DoubleSpinBoxAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = box()->isReadOnly();
    state.editable = !box()->isReadOnly();
    state.invalid = !box()->d->problem.isNull();
    return state;
}

QAccessibleInterface* DoubleSpinBoxAccessible::child(int index) const {
    Q_UNUSED(index)
    return nullptr;
}

void* DoubleSpinBoxAccessible::interface_cast(QAccessible::InterfaceType type) {
    // The text while it is typed.
    if ((type == QAccessible::TextInterface || type == QAccessible::EditableTextInterface) &&
        box()->d->typing) {
        QAccessibleInterface* line = QAccessible::queryAccessibleInterface(box()->lineEdit());
        return line ? line->interface_cast(type) : nullptr;
    }
    return ValueAccessible::interface_cast(type);
}

QVariant DoubleSpinBoxAccessible::currentValue() const {
    return box()->value();
}

void DoubleSpinBoxAccessible::setCurrentValue(const QVariant& value) {
    bool isNumber = false;
    const double wanted = value.toDouble(&isNumber);
    if (isNumber && std::isfinite(wanted) && box()->isEnabled())
        box()->d->setOnce(box()->d->clamped(wanted));
}

QVariant DoubleSpinBoxAccessible::minimumStepSize() const {
    const double up = box()->d->stepped(1.0, 1.0) - box()->value();
    return up > 0.0 ? up : box()->value() - box()->d->stepped(-1.0, 1.0);
}

} // namespace Kestrel::UI
