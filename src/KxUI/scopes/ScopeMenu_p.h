#pragma once

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QString>

#include <utility>
#include <vector>

namespace Kestrel::UI {

/** Adds a menu of choices, of which the present one is checked; another one calls `choose` on behalf of
    `context`. */
template <class Value, class Choose>
void addChoices(QMenu& menu, const QString& title,
                const std::vector<std::pair<Value, QString>>& choices, Value present,
                QObject* context, Choose choose) {
    QMenu* const sub = menu.addMenu(title);
    auto* const group = new QActionGroup(sub);
    for (const auto& [value, text] : choices) {
        QAction* const action = sub->addAction(text);
        action->setCheckable(true);
        action->setChecked(value == present);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, context,
                         [choose, chosen = value] { choose(chosen); });
    }
}

/** Adds an entry that switches something; `set` is called on behalf of `context`. */
template <class Context, class Set>
void addToggle(QMenu& menu, const QString& text, bool on, Context* context, Set set) {
    QAction* const action = menu.addAction(text);
    action->setCheckable(true);
    action->setChecked(on);
    QObject::connect(action, &QAction::toggled, context, set);
}

} // namespace Kestrel::UI
