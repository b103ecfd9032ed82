#include <KxUI/values/DoubleSpinBoxAccessible_p.h>

#include <KxUI/values/DoubleSpinBox_p.h>

#include <QLineEdit>

#include <cmath>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::DoubleSpinBox")) {
        if (auto* box = qobject_cast<DoubleSpinBox*>(object))
            return new DoubleSpinBoxAccessible(box);
    }
    return nullptr;
}

} // namespace

DoubleSpinBoxAccessible::DoubleSpinBoxAccessible(DoubleSpinBox* box)
    : QAccessibleWidget(box, QAccessible::SpinBox) {}

void DoubleSpinBoxAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

QString DoubleSpinBoxAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Value)
        return box()->text();
    if (kind == QAccessible::Name && text.isEmpty() && box()->label())
        return box()->label()->text().remove(QLatin1Char('&'));
    if (kind == QAccessible::Description && !box()->d->problem.isNull())
        return box()->d->problem;
    return text;
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
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    // The text while it is typed.
    if ((type == QAccessible::TextInterface || type == QAccessible::EditableTextInterface) &&
        box()->d->typing) {
        QAccessibleInterface* line = QAccessible::queryAccessibleInterface(box()->lineEdit());
        return line ? line->interface_cast(type) : nullptr;
    }
    return QAccessibleWidget::interface_cast(type);
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

QVariant DoubleSpinBoxAccessible::maximumValue() const {
    return box()->maximum();
}

QVariant DoubleSpinBoxAccessible::minimumValue() const {
    return box()->minimum();
}

QVariant DoubleSpinBoxAccessible::minimumStepSize() const {
    const double up = box()->d->stepped(1.0, 1.0) - box()->value();
    return up > 0.0 ? up : box()->value() - box()->d->stepped(-1.0, 1.0);
}

DoubleSpinBox* DoubleSpinBoxAccessible::box() const {
    return static_cast<DoubleSpinBox*>(object());
}

} // namespace Kestrel::UI
