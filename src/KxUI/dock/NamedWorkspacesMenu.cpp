#include <KxUI/dock/NamedWorkspacesMenu.h>

#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <functional>

namespace Kestrel::UI {

namespace {

/** A name in a menu: what looks like a mnemonic is part of it. */
QString entryText(QString name) {
    return name.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

struct NamedWorkspacesMenu::Private {
    NamedWorkspacesMenu* const menu;
    QPointer<NamedWorkspaces> workspaces;

    using Deed =
        std::function<void(NamedWorkspaces& workspaces, const NamedWorkspaces::Done& done)>;
    using NamedDeed = void (Private::*)(const QString& name);

    QWidget* window() const;
    void fill();
    void addEntries(QMenu* to, NamedDeed deed, bool marksCurrent);
    void act(const QString& title, const Deed& deed);
    void askName(const QString& title, const QString& suggestion,
                 const std::function<void(const QString&)>& use);
    void confirm(const QString& question, const QString& button, const std::function<void()>& act);
    void restore(const QString& name);
    void saveAs();
    void save(const QString& name);
    void rename(const QString& name);
    void remove(const QString& name);
};

/** Over which the questions come up. */
QWidget* NamedWorkspacesMenu::Private::window() const {
    if (workspaces && workspaces->workspace())
        return workspaces->workspace();
    return menu->parentWidget();
}

void NamedWorkspacesMenu::Private::fill() {
    menu->clear();
    // Those of before are children of the menu, and no entries of it any more.
    const auto submenus = menu->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    for (QMenu* submenu : submenus)
        submenu->deleteLater();
    if (!workspaces)
        return;
    addEntries(menu, &Private::restore, true);
    menu->addSeparator();
    const QString current = workspaces->current();
    QAction* again = menu->addAction(
        current.isEmpty() ? NamedWorkspacesMenu::tr("&Save")
                          : NamedWorkspacesMenu::tr("&Save \"%1\"").arg(entryText(current)));
    again->setEnabled(!current.isEmpty());
    QObject::connect(again, &QAction::triggered, menu, [this, current] { save(current); });
    QObject::connect(menu->addAction(NamedWorkspacesMenu::tr("Save &As...")), &QAction::triggered,
                     menu, [this] { saveAs(); });
    addEntries(menu->addMenu(NamedWorkspacesMenu::tr("&Rename")), &Private::rename, false);
    addEntries(menu->addMenu(NamedWorkspacesMenu::tr("&Delete")), &Private::remove, false);
}

void NamedWorkspacesMenu::Private::addEntries(QMenu* to, NamedDeed deed, bool marksCurrent) {
    const QStringList names = workspaces->names();
    to->menuAction()->setEnabled(to == menu || !names.isEmpty());
    for (const QString& name : names) {
        QAction* action = to->addAction(entryText(name));
        if (marksCurrent) {
            action->setCheckable(true);
            action->setChecked(name == workspaces->current());
        }
        QObject::connect(action, &QAction::triggered, menu,
                         [this, deed, name] { (this->*deed)(name); });
    }
}

/** Does it, and says why when it fails. */
void NamedWorkspacesMenu::Private::act(const QString& title, const Deed& deed) {
    if (!workspaces)
        return;
    const QPointer<NamedWorkspacesMenu> alive(menu);
    deed(*workspaces, [this, alive, title](const QString& problem) {
        if (!alive || problem.isEmpty())
            return;
        auto* box =
            new QMessageBox(QMessageBox::Warning, title, problem, QMessageBox::Ok, window());
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    });
}

void NamedWorkspacesMenu::Private::askName(const QString& title, const QString& suggestion,
                                           const std::function<void(const QString&)>& use) {
    auto* dialog = new QInputDialog(window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    dialog->setLabelText(NamedWorkspacesMenu::tr("Name:"));
    dialog->setTextValue(suggestion);
    QObject::connect(dialog, &QInputDialog::textValueSelected, menu, use);
    dialog->open();
}

void NamedWorkspacesMenu::Private::confirm(const QString& question, const QString& button,
                                           const std::function<void()>& act) {
    auto* box = new QMessageBox(QMessageBox::Question, menu->title(), question, QMessageBox::Cancel,
                                window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    const QAbstractButton* yes = box->addButton(button, QMessageBox::AcceptRole);
    QObject::connect(box, &QMessageBox::buttonClicked, menu,
                     [yes, act](const QAbstractButton* clicked) {
                         if (clicked == yes)
                             act();
                     });
    box->open();
}

void NamedWorkspacesMenu::Private::restore(const QString& name) {
    act(NamedWorkspacesMenu::tr("Load Workspace"),
        [name](NamedWorkspaces& of, const NamedWorkspaces::Done& done) { of.restore(name, done); });
}

void NamedWorkspacesMenu::Private::save(const QString& name) {
    act(NamedWorkspacesMenu::tr("Save Workspace"),
        [name](NamedWorkspaces& of, const NamedWorkspaces::Done& done) { of.save(name, done); });
}

void NamedWorkspacesMenu::Private::saveAs() {
    askName(NamedWorkspacesMenu::tr("Save Workspace"),
            workspaces ? workspaces->current() : QString(), [this](const QString& name) {
                if (!workspaces || !workspaces->contains(name))
                    return save(name);
                confirm(NamedWorkspacesMenu::tr("Replace the workspace \"%1\"?")
                            .arg(NamedWorkspaces::cleanName(name)),
                        NamedWorkspacesMenu::tr("Replace"), [this, name] { save(name); });
            });
}

void NamedWorkspacesMenu::Private::rename(const QString& name) {
    askName(NamedWorkspacesMenu::tr("Rename Workspace"), name,
            [this, name](const QString& newName) {
                act(NamedWorkspacesMenu::tr("Rename Workspace"),
                    [name, newName](NamedWorkspaces& of, const NamedWorkspaces::Done& done) {
                        of.rename(name, newName, done);
                    });
            });
}

void NamedWorkspacesMenu::Private::remove(const QString& name) {
    confirm(NamedWorkspacesMenu::tr("Delete the workspace \"%1\"?").arg(name),
            NamedWorkspacesMenu::tr("Delete"), [this, name] {
                act(NamedWorkspacesMenu::tr("Delete Workspace"),
                    [name](NamedWorkspaces& of, const NamedWorkspaces::Done& done) {
                        of.remove(name, done);
                    });
            });
}

NamedWorkspacesMenu::NamedWorkspacesMenu(QWidget* parent)
    : QMenu(NamedWorkspacesMenu::tr("Works&paces"), parent)
    , d(new Private{this, nullptr}) {
    connect(this, &QMenu::aboutToShow, this, [this] {
        if (d->workspaces)
            d->workspaces->refresh(); // which fills it again where that changes something
        d->fill();
    });
}

NamedWorkspacesMenu::~NamedWorkspacesMenu() = default;

NamedWorkspaces* NamedWorkspacesMenu::workspaces() const {
    return d->workspaces;
}

void NamedWorkspacesMenu::setWorkspaces(NamedWorkspaces* workspaces) {
    KXUI_INTERFACE_THREAD(this);
    if (d->workspaces)
        d->workspaces->disconnect(this);
    d->workspaces = workspaces;
    if (workspaces) {
        connect(workspaces, &NamedWorkspaces::namesChanged, this, [this] { d->fill(); });
        connect(workspaces, &NamedWorkspaces::currentChanged, this, [this] { d->fill(); });
    }
    // Filled now already: a menu that has nothing in it is not shown in some menu bars.
    d->fill();
}

} // namespace Kestrel::UI
