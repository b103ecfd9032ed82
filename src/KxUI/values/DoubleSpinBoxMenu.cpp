#include <KxUI/values/DoubleSpinBox_p.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>

namespace Kestrel::UI {

// Of what is typed. Those of the line edit itself go with their menu.
void DoubleSpinBoxPrivate::addStandardActions(QMenu* menu) {
    QMenu* standard = edit()->createStandardContextMenu();
    standard->setParent(menu);
    standard->hide();
    menu->addActions(standard->actions());
    menu->addSeparator();
}

void DoubleSpinBoxPrivate::addValueActions(QMenu* menu) {
    const bool writes = !q->isReadOnly();
    const auto add = [&](const QString& text, bool enabled, auto act) {
        QAction* action = menu->addAction(text);
        action->setEnabled(enabled);
        QObject::connect(action, &QAction::triggered, q, act);
    };
    const QAbstractSpinBox::StepEnabled steps = q->stepEnabled();
    add(DoubleSpinBox::tr("Copy Value"), !mixed, [this] { copyValue(); });
    add(DoubleSpinBox::tr("Paste Value"), writes && !QApplication::clipboard()->text().isEmpty(),
        [this] { pasteValue(); });
    add(DoubleSpinBox::tr("Reset to Default"), writes, [this] { q->resetToDefault(); });
    add(DoubleSpinBox::tr("Negate"), writes && !mixed, [this] { setOnce(clamped(-value) + 0.0); });
    menu->addSeparator();
    add(DoubleSpinBox::tr("Step Up"), steps.testFlag(QAbstractSpinBox::StepUpEnabled),
        [this] { q->stepBy(1); });
    add(DoubleSpinBox::tr("Step Down"), steps.testFlag(QAbstractSpinBox::StepDownEnabled),
        [this] { q->stepBy(-1); });
}

void DoubleSpinBoxPrivate::addUnits(QMenu* menu) {
    if (units.count() < 2)
        return;
    menu->addSeparator();
    QMenu* choice = menu->addMenu(DoubleSpinBox::tr("Show in"));
    for (int unit = 0; unit < units.count(); ++unit) {
        const QString symbol = units.unit(unit).symbol;
        QAction* action = choice->addAction(symbol);
        action->setCheckable(true);
        action->setChecked(unit == shownUnit);
        QObject::connect(action, &QAction::triggered, q, [this, symbol] { q->setUnit(symbol); });
    }
}

QMenu* DoubleSpinBoxPrivate::makeMenu() {
    auto* menu = new QMenu(q);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (typing)
        addStandardActions(menu);
    addValueActions(menu);
    addUnits(menu);
    return menu;
}

// No loop of events of its own, which a host that deletes the field would leave behind.
void DoubleSpinBox::contextMenuEvent(QContextMenuEvent* event) {
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    event->accept();
    const QPointer<DoubleSpinBox> alive(this);
    d->opensMenu = true; // some window systems take the focus for it
    d->makeMenu()->popup(byMouse ? event->globalPos() : mapToGlobal(rect().center()));
    if (alive)
        d->opensMenu = false;
}

} // namespace Kestrel::UI
