#include "workspace/WorkspaceMenu.h"

#include "workspace/BuiltInLayouts.h"
#include "workspace/PageKinds.h"
#include "workspace/Workspace.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/dock/NamedWorkspacesMenu.h>
#include <KxUI/kit/FullScreen.h>
#include <KxUI/kit/IconFactory.h>

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QStandardPaths>

namespace Kestrel::Workbench {

namespace {

/** The user's own workspaces. */
QString workspaceFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/workspaces");
}

/** Where the dialogs start. */
QString dialogFolder() {
    const QString folder = workspaceFolder();
    return QDir().mkpath(folder) ? folder : QDir::homePath();
}

} // namespace

WorkspaceMenu::WorkspaceMenu(Workspace* workspace)
    : QMenu(tr("&Workspace"), workspace)
    , m_workspace(workspace) {
    addLayouts();
    addSeparator();
    addFiles();
    addSeparator();
    addPages();
    addSeparator();
    addFocusActions();
    addSeparator();
    addPaneActions();
    connect(this, &QMenu::aboutToShow, this, &WorkspaceMenu::showState);
}

void WorkspaceMenu::addLayouts() {
    int number = 0;
    for (const BuiltInLayout& layout : builtInLayouts()) {
        QAction* action = addAction(layout.translatedName());
        action->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + number++)));
        connect(action, &QAction::triggered, m_workspace,
                [workspace = m_workspace, &layout] { workspace->arrange(layout); });
    }
}

void WorkspaceMenu::addFiles() {
    auto* named = new UI::NamedWorkspaces(m_workspace);
    named->setFolder(workspaceFolder());
    auto* menu = new UI::NamedWorkspacesMenu(this);
    menu->setWorkspaces(named);
    // Its letter is that of a layout here.
    menu->setTitle(menu->title().remove(QLatin1Char('&')));
    addMenu(menu);
    addAction(tr("&Save Workspace..."), this, &WorkspaceMenu::save,
              QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    addAction(tr("&Load Workspace..."), this, &WorkspaceMenu::load,
              QKeySequence(QStringLiteral("Ctrl+Shift+O")));
    addAction(tr("Rese&t"), m_workspace,
              [workspace = m_workspace] { workspace->arrange(builtInLayouts().front()); });
}

void WorkspaceMenu::addPages() {
    m_pages = addMenu(tr("&Panels"));
    for (const PageKind& kind : pageKinds()) {
        const QString id = QLatin1String(kind.id);
        QAction* action = m_pages->addAction(UI::IconFactory::icon(QLatin1String(kind.icon)),
                                             kind.translatedTitle());
        action->setObjectName(id);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, id] { togglePage(id); });
    }
    connect(m_pages, &QMenu::aboutToShow, this, &WorkspaceMenu::showState);
}

void WorkspaceMenu::addFocusActions() {
    addAction(m_workspace->nextDockAction());
    addAction(m_workspace->prevDockAction());
    addAction(m_workspace->nextTabAction());
    addAction(m_workspace->prevTabAction());
}

void WorkspaceMenu::addPaneActions() {
    addPaneAction(tr("Pane &Menu"), QStringLiteral("Ctrl+Shift+M"),
                  [](UI::Dock* dock) { dock->menu()->popup(dock->mapToGlobal(QPoint(2, 2))); });
    m_expand = addPaneAction(tr("&Expand Pane"), QStringLiteral("Ctrl+Shift+E"),
                             [](UI::Dock* dock) { dock->setExpanded(!dock->isExpanded()); });
    m_expand->setCheckable(true);
    m_showTabs =
        addPaneAction(tr("Show Ta&bs"), QStringLiteral("Ctrl+Shift+T"),
                      [](UI::Dock* dock) { dock->setTitleVisible(!dock->titleVisible()); });
    m_showTabs->setCheckable(true);
    addPaneAction(tr("T&urn Splitter"), QString(), [](UI::Dock* dock) { dock->transposeDock(); });
    addSeparator();
    m_fullScreen = addAction(tr("&Full Screen"));
    m_fullScreen->setShortcut(QKeySequence(Qt::Key_F11));
    m_fullScreen->setCheckable(true);
    connect(m_fullScreen, &QAction::triggered, this, [this] {
        // A floating window that has the focus is meant itself.
        QWidget* dock = m_workspace->activeDock();
        UI::FullScreen::toggle(dock ? dock : m_workspace, m_workspace);
        showState();
    });
}

QAction* WorkspaceMenu::addPaneAction(const QString& text, const QString& keys,
                                      const std::function<void(UI::Dock*)>& act) {
    QAction* action = addAction(text);
    action->setShortcut(QKeySequence(keys));
    connect(action, &QAction::triggered, this, [this, act] {
        if (UI::Dock* dock = m_workspace->activeDock())
            act(dock);
        showState();
    });
    return action;
}

/** Opens a closed panel, brings one to the front that is behind others, closes the one in front. */
void WorkspaceMenu::togglePage(const QString& id) {
    if (m_workspace->showsPage(id))
        m_workspace->closePage(id);
    else
        m_workspace->showPage(id);
    showState();
}

void WorkspaceMenu::save() {
    using Chooser = UI::FileChooserDialog;
    auto* chooser = askForFile(Chooser::SaveFile, [this](const QString& file) {
        const QString problem = m_workspace->saveTo(file);
        if (!problem.isEmpty())
            QMessageBox::warning(m_workspace, tr("Save Workspace"),
                                 tr("The workspace could not be saved to \"%1\":\n%2")
                                     .arg(QDir::toNativeSeparators(file), problem));
    });
    chooser->setWindowTitle(tr("Save Workspace"));
    chooser->setDefaultSuffix("xml");
}

void WorkspaceMenu::load() {
    using Chooser = UI::FileChooserDialog;
    auto* chooser = askForFile(Chooser::OpenFile, [this](const QString& file) {
        const QString problem = m_workspace->loadFrom(file);
        if (!problem.isEmpty())
            QMessageBox::warning(
                m_workspace, tr("Load Workspace"),
                tr("\"%1\" is no workspace that can be shown; nothing was changed.\n%2")
                    .arg(QDir::toNativeSeparators(file), problem));
    });
    chooser->setWindowTitle(tr("Load Workspace"));
}

/** Returns at once; `done` is called with what the user chose. */
UI::FileChooserDialog* WorkspaceMenu::askForFile(UI::FileChooserDialog::Mode mode,
                                                 const std::function<void(const QString&)>& done) {
    using Chooser = UI::FileChooserDialog;
    auto* chooser =
        Chooser::open(mode, m_workspace, QStringLiteral("workspace"), {tr("Workspaces (*.xml)")},
                      [done](const std::vector<Chooser::Choice>& choices) {
                          done(QFile::decodeName(choices.front().path));
                      });
    chooser->setAcceptsSequences(false);
    chooser->setFolder(QFile::encodeName(dialogFolder()));
    return chooser;
}

void WorkspaceMenu::showState() {
    const UI::Dock* dock = m_workspace->activeDock();
    const auto pages = m_pages->actions();
    for (QAction* action : pages)
        action->setChecked(m_workspace->showsPage(action->objectName()));
    m_expand->setChecked(dock && dock->isExpanded());
    m_showTabs->setChecked(dock && dock->titleVisible());
    m_fullScreen->setChecked(
        UI::FullScreen::isOn(dock ? dock : static_cast<QWidget*>(m_workspace)));
}

} // namespace Kestrel::Workbench
