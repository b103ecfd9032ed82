#include <KxUI/kit/ValueAccessible_p.h>

#include <QWidget>

namespace Kestrel::UI {

ValueAccessible::ValueAccessible(QWidget* widget, QAccessible::Role role)
    : QAccessibleWidget(widget, role) {}

QString ValueAccessible::text(QAccessible::Text kind) const {
    QString said;
    if (kind == QAccessible::Value)
        said = valueText();
    if (said.isEmpty())
        said = QAccessibleWidget::text(kind);
    if (said.isEmpty() && kind == QAccessible::Name)
        said = standardName();
    return said;
}

void* ValueAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

void tellAccessibleValue(QWidget* widget, const QVariant& value) {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent change(widget, value);
    QAccessible::updateAccessibility(&change);
}

} // namespace Kestrel::UI
