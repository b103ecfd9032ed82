#include <KxUI/browse/CrumbButtonAccessible_p.h>

#include <KxUI/browse/CrumbButton_p.h>

namespace Kestrel::UI {

CrumbButtonAccessible::CrumbButtonAccessible(CrumbButton* button)
    : QAccessibleWidget(button, button->part() == CrumbButton::Name ? QAccessible::Button
                                                                    : QAccessible::ButtonMenu) {}

CrumbButton* CrumbButtonAccessible::button() const {
    return static_cast<CrumbButton*>(object());
}

const QString& CrumbButtonAccessible::ownAction() const {
    return button()->part() == CrumbButton::Name ? pressAction() : showMenuAction();
}

QAccessible::State CrumbButtonAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = button()->part() != CrumbButton::Name;
    state.focusable = true; // as soon as somebody goes there
    return state;
}

QStringList CrumbButtonAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled())
        names.prepend(ownAction());
    return names;
}

void CrumbButtonAccessible::doAction(const QString& name) {
    if (name != ownAction())
        QAccessibleWidget::doAction(name);
    else if (button()->isEnabled())
        button()->click();
}

} // namespace Kestrel::UI
