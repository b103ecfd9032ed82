#include <KxUI/scopes/ScopeAccessible_p.h>

#include <KxUI/scopes/ScopeView_p.h>

namespace Kestrel::UI {

ScopeAccessible::ScopeAccessible(QWidget* view)
    : ValueAccessible(view, QAccessible::Chart) {}

void ScopeAccessible::install() {
    // Asked for by the name of each class up to this one.
    installAccessible<ScopeAccessible, ScopeView>();
}

QVariant ScopeAccessible::currentValue() const {
    return valueText();
}

// What was counted is nobody's to set.
void ScopeAccessible::setCurrentValue(const QVariant&) {}

QString ScopeAccessible::valueText() const {
    return widgetAs<ScopeView>()->readout().text;
}

QString ScopeAccessible::standardName() const {
    return ScopeViewPrivate::of(*widgetAs<ScopeView>()).name();
}

} // namespace Kestrel::UI
