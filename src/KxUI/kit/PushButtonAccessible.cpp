#include <KxUI/kit/PushButtonAccessible_p.h>

#include <KxUI/kit/ChoiceList_p.h>
#include <KxUI/kit/PushButton.h>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::PushButton")) {
        if (auto* button = qobject_cast<PushButton*>(object))
            return new PushButtonAccessible(button);
    }
    return nullptr;
}

} // namespace

PushButtonAccessible::PushButtonAccessible(PushButton* button)
    : QAccessibleWidget(button, QAccessible::Button) {}

void PushButtonAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

void PushButtonAccessible::tellBusy(PushButton* button) {
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.busy = true;
    QAccessibleStateChangeEvent event(button, changed);
    QAccessible::updateAccessibility(&event);
}

PushButton* PushButtonAccessible::button() const {
    return static_cast<PushButton*>(object());
}

QString PushButtonAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Name || !text.isEmpty())
        return text;
    Choice label;
    label.text = button()->text();
    return label.plainText();
}

QAccessible::State PushButtonAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.busy = button()->isBusy();
    state.pressed = button()->isDown();
    state.checkable = button()->isCheckable();
    state.checked = button()->isChecked();
    state.defaultButton = button()->isDefault();
    return state;
}

QStringList PushButtonAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled() && !button()->isBusy())
        names.prepend(button()->isCheckable() ? toggleAction() : pressAction());
    return names;
}

void PushButtonAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    if (name == pressAction() || name == toggleAction())
        button()->animateClick();
    else
        QAccessibleWidget::doAction(name);
}

} // namespace Kestrel::UI
