#include <KxUI/picker/ColorButtonAccessible_p.h>

#include <KxUI/picker/ColorButton.h>
#include <KxUI/picker/ColorMime_p.h>

namespace Kestrel::UI {
namespace {

QString wordsOf(const ColorButton& button) {
    return colorWords(button.color(), DisplayCall(button.displayTransform()), QStringLiteral(", "));
}

} // namespace

ColorButtonAccessible::ColorButtonAccessible(ColorButton* button)
    : QAccessibleWidget(button, QAccessible::ButtonMenu) {}

ColorButton* ColorButtonAccessible::button() const {
    return static_cast<ColorButton*>(object());
}

void ColorButtonAccessible::tellColor(ColorButton* button) {
    if (QAccessible::isActive())
        tellAccessibleValue(button, wordsOf(*button));
}

QString ColorButtonAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return wordsOf(*button());
    const QString text = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Name || !text.isEmpty())
        return text;
    return button()->title().isEmpty() ? ColorButton::tr("Colour") : button()->title();
}

QAccessible::State ColorButtonAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = button()->isOpen();
    state.collapsed = !state.expanded;
    return state;
}

QStringList ColorButtonAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void ColorButtonAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    if (name == pressAction())
        button()->click();
    else
        QAccessibleWidget::doAction(name);
}

} // namespace Kestrel::UI
