#include <KxUI/kit/ChoiceAccessible_p.h>

#include <KxUI/kit/ChoiceBar_p.h>
#include <KxUI/kit/ChoiceButton.h>

#include <QKeySequence>

namespace Kestrel::UI {
namespace {

template <class Widget, class Accessible>
QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String(Widget::staticMetaObject.className())) {
        if (auto* widget = qobject_cast<Widget*>(object))
            return new Accessible(widget);
    }
    return nullptr;
}

template <class Widget, class Accessible>
void installOnce() {
    static const bool installed = [] {
        QAccessible::installFactory(create<Widget, Accessible>);
        return true;
    }();
    Q_UNUSED(installed)
}

} // namespace

ChoiceBarAccessible::ChoiceBarAccessible(ChoiceBar* bar)
    : QAccessibleWidget(bar, QAccessible::Grouping) {}

ChoiceBarAccessible::~ChoiceBarAccessible() {
    for (const QAccessible::Id id : m_children)
        QAccessible::deleteAccessibleInterface(id);
}

void ChoiceBarAccessible::install() {
    installOnce<ChoiceBar, ChoiceBarAccessible>();
}

ChoiceBar* ChoiceBarAccessible::bar() const {
    return static_cast<ChoiceBar*>(object());
}

void ChoiceBarAccessible::send(int index, QAccessible::Event type) const {
    QAccessibleInterface* const choice = child(index);
    if (!choice)
        return;
    if (type == QAccessible::StateChanged) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(choice, changed);
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleEvent event(choice, type);
        QAccessible::updateAccessibility(&event);
    }
}

void ChoiceBarAccessible::tellChecked(ChoiceBar* bar) {
    if (!QAccessible::isActive())
        return;
    if (auto* self =
            dynamic_cast<ChoiceBarAccessible*>(QAccessible::queryAccessibleInterface(bar))) {
        for (int i = 0; i < bar->choiceCount(); ++i)
            self->send(i, QAccessible::StateChanged);
    }
}

void ChoiceBarAccessible::tellFocus(ChoiceBar* bar, int index) {
    if (!QAccessible::isActive() || !bar->hasFocus())
        return;
    if (auto* self = dynamic_cast<ChoiceBarAccessible*>(QAccessible::queryAccessibleInterface(bar)))
        self->send(index, QAccessible::Focus);
}

int ChoiceBarAccessible::childCount() const {
    return bar()->choiceCount();
}

QAccessibleInterface* ChoiceBarAccessible::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    while (static_cast<int>(m_children.size()) <= index)
        m_children.push_back(QAccessible::registerAccessibleInterface(
            new ChoiceAccessible(bar(), static_cast<int>(m_children.size()))));
    return QAccessible::accessibleInterface(m_children[static_cast<std::size_t>(index)]);
}

int ChoiceBarAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const choice = dynamic_cast<const ChoiceAccessible*>(child);
    return choice && choice->parent() == this ? choice->index() : -1;
}

QAccessibleInterface* ChoiceBarAccessible::childAt(int x, int y) const {
    return child(bar()->d().layout().choiceAt(bar()->mapFromGlobal(QPoint(x, y))));
}

QAccessibleInterface* ChoiceBarAccessible::focusChild() const {
    return bar()->hasFocus() ? child(bar()->d().cursor()) : nullptr;
}

ChoiceAccessible::ChoiceAccessible(ChoiceBar* bar, int index)
    : m_bar(bar)
    , m_index(index) {}

bool ChoiceAccessible::isValid() const {
    return m_bar && m_index < m_bar->choiceCount();
}

QWindow* ChoiceAccessible::window() const {
    return parent() ? parent()->window() : nullptr;
}

QAccessibleInterface* ChoiceAccessible::parent() const {
    return m_bar ? QAccessible::queryAccessibleInterface(m_bar) : nullptr;
}

QString ChoiceAccessible::text(QAccessible::Text kind) const {
    if (!isValid())
        return {};
    const Choice& choice = m_bar->d().list.at(m_index);
    switch (kind) {
    case QAccessible::Name:
        return choice.plainText().isEmpty() ? choice.toolTip : choice.plainText();
    case QAccessible::Description:
        return ChoiceBar::tr("%1 of %2").arg(m_index + 1).arg(m_bar->choiceCount());
    case QAccessible::Help:
        return choice.toolTip;
    case QAccessible::Accelerator:
        return QKeySequence::mnemonic(choice.text).toString(QKeySequence::NativeText);
    default:
        return {};
    }
}

QRect ChoiceAccessible::rect() const {
    if (!isValid())
        return {};
    const QRect part = m_bar->d().layout().partOf(m_index);
    return {m_bar->mapToGlobal(part.topLeft()), part.size()};
}

QAccessible::Role ChoiceAccessible::role() const {
    return m_bar && m_bar->isExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
}

QAccessible::State ChoiceAccessible::state() const {
    QAccessible::State state;
    state.invalid = !isValid();
    if (state.invalid)
        return state;
    const ChoiceBarPrivate& d = m_bar->d();
    state.checkable = true;
    state.checked = d.list.at(m_index).checked;
    state.disabled = !m_bar->isEnabled() || !d.list.at(m_index).enabled;
    state.focusable = !state.disabled;
    state.focused = m_bar->hasFocus() && d.cursor() == m_index;
    state.invisible = !m_bar->isVisible();
    return state;
}

void* ChoiceAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList ChoiceAccessible::actionNames() const {
    if (!isValid() || state().disabled)
        return {};
    return {m_bar->isExclusive() ? pressAction() : toggleAction(), setFocusAction()};
}

void ChoiceAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    if (name == setFocusAction()) {
        m_bar->d().keyboardAt = m_index;
        m_bar->setFocus(Qt::OtherFocusReason);
    } else {
        m_bar->d().choose(m_index);
    }
}

QStringList ChoiceAccessible::keyBindingsForAction(const QString& name) const {
    const QString letter = text(QAccessible::Accelerator);
    if (name == setFocusAction() || letter.isEmpty())
        return {};
    return {letter};
}

ChoiceButtonAccessible::ChoiceButtonAccessible(ChoiceButton* button)
    : QAccessibleWidget(button, QAccessible::ComboBox) {}

void ChoiceButtonAccessible::install() {
    installOnce<ChoiceButton, ChoiceButtonAccessible>();
}

void ChoiceButtonAccessible::tellValue(ChoiceButton* button) {
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(button, button->text());
    QAccessible::updateAccessibility(&event);
}

ChoiceButton* ChoiceButtonAccessible::button() const {
    return static_cast<ChoiceButton*>(object());
}

QString ChoiceButtonAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return button()->text();
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? ChoiceButton::tr("Choice") : text;
}

QAccessible::State ChoiceButtonAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = button()->isDown();
    state.collapsed = !state.expanded;
    return state;
}

QStringList ChoiceButtonAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled())
        names = QStringList{showMenuAction(), increaseAction(), decreaseAction()} + names;
    return names;
}

void ChoiceButtonAccessible::doAction(const QString& name) {
    if (!button()->isEnabled())
        return;
    if (name == showMenuAction() || name == pressAction()) {
        // Not now: showing it ends when the user has chosen.
        QMetaObject::invokeMethod(button(), &QToolButton::showMenu, Qt::QueuedConnection);
    } else if (name == increaseAction() || name == decreaseAction()) {
        ChoicesPrivate& choices = button()->choices();
        const int next =
            choices.list.next(button()->currentIndex(), name == increaseAction() ? 1 : -1);
        if (next >= 0 && button()->isExclusive())
            choices.choose(next);
    } else {
        QAccessibleWidget::doAction(name);
    }
}

} // namespace Kestrel::UI
