#include <KxUI/kit/DisclosureAccessible_p.h>

#include <KxUI/kit/ChoiceList_p.h>
#include <KxUI/kit/Disclosure_p.h>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::Disclosure")) {
        if (auto* section = qobject_cast<Disclosure*>(object))
            return new DisclosureAccessible(section);
    } else if (className == QLatin1String("Kestrel::UI::DisclosureHeader")) {
        if (auto* header = qobject_cast<DisclosureHeader*>(object))
            return new DisclosureHeaderAccessible(header);
    }
    return nullptr;
}

QString nameOf(const Disclosure& section) {
    Choice label;
    label.text = section.title();
    return section.accessibleName().isEmpty() ? label.plainText() : section.accessibleName();
}

void addExpansion(QAccessible::State& state, const Disclosure& section) {
    state.expandable = true;
    state.expanded = section.isExpanded();
    state.collapsed = !section.isExpanded();
}

} // namespace

DisclosureAccessible::DisclosureAccessible(Disclosure* section)
    : QAccessibleWidget(section, QAccessible::Grouping) {}

void DisclosureAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

void DisclosureAccessible::tellExpanded(DisclosureHeader* header) {
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(header, changed);
    QAccessible::updateAccessibility(&event);
}

void DisclosureAccessible::tellChecked(DisclosureHeader* header) {
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(header, changed);
    QAccessible::updateAccessibility(&event);
}

QString DisclosureAccessible::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name ? nameOf(*static_cast<Disclosure*>(object()))
                                     : QAccessibleWidget::text(kind);
}

QAccessible::State DisclosureAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    addExpansion(state, *static_cast<Disclosure*>(object()));
    return state;
}

DisclosureHeaderAccessible::DisclosureHeaderAccessible(DisclosureHeader* header)
    : QAccessibleWidget(header, QAccessible::Button) {}

Disclosure* DisclosureHeaderAccessible::section() const {
    return static_cast<DisclosureHeader*>(object())->section();
}

QString DisclosureHeaderAccessible::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return nameOf(*section());
    case QAccessible::Description: {
        QStringList parts;
        if (section()->isModified())
            parts += Disclosure::tr("changed");
        if (!section()->isExpanded() && !section()->summary().isEmpty())
            parts += section()->summary();
        return parts.join(QStringLiteral("; "));
    }
    case QAccessible::Accelerator:
        return QKeySequence::mnemonic(section()->title()).toString(QKeySequence::NativeText);
    default:
        return QAccessibleWidget::text(kind);
    }
}

QAccessible::State DisclosureHeaderAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    addExpansion(state, *section());
    state.checkable = section()->isCheckable();
    state.checked = section()->isCheckable() && section()->isChecked();
    return state;
}

QStringList DisclosureHeaderAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (section()->isEnabled() && section()->isCheckable())
        names.prepend(toggleAction());
    if (section()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void DisclosureHeaderAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    if (name == pressAction())
        section()->toggleExpanded();
    else if (name == toggleAction())
        static_cast<DisclosureHeader*>(object())->switchCheck();
    else
        QAccessibleWidget::doAction(name);
}

} // namespace Kestrel::UI
