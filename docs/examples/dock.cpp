// A workspace of panes that comes back as it was left, and arrangements that the user names.

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/dock/NamedWorkspacesMenu.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMenuBar>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextEdit>

#include <cstdio>

using namespace Kestrel::UI;

namespace {

QWidget* makePage(const QString& id) {
    auto* page = new QTextEdit;
    page->setObjectName(id);                  // what layouts know it by
    page->setWindowTitle(id);                 // its tab
    page->setAttribute(Qt::WA_DeleteOnClose); // createPage makes another one
    return page;
}

class Workspace : public DockMainWindow {
public:
    QWidget* createPage(QString& id) override { return makePage(id); }

    static QDir folder() {
        return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    }

    // Where there is no layout, or one that is refused, nothing has changed.
    bool restoreLast() {
        QFile file(folder().filePath(QStringLiteral("layout.xml")));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        DockLayoutError error;
        if (!restoreWholeLayout(&file, false, &error))
            std::fprintf(stderr, "%s\n", qPrintable(error.message()));
        return !error;
    }

    void arrange() {
        Dock* viewer = createDock();
        addWidget(viewer);
        viewer->addWidget(makePage(QStringLiteral("Viewer")), true, false);
        Dock* properties = viewer->split(Qt::Horizontal, false);
        properties->addWidget(makePage(QStringLiteral("Properties")), true, false);
        properties->addWidget(makePage(QStringLiteral("Scopes")), false, false);
        Dock* graph = viewer->split(Qt::Vertical, false);
        graph->addWidget(makePage(QStringLiteral("Node Graph")), true, false);
        resize(720, 360);
    }

protected:
    // Later there are no pages left.
    void closeEvent(QCloseEvent* event) override {
        folder().mkpath(QStringLiteral("."));
        QSaveFile file(folder().filePath(QStringLiteral("layout.xml")));
        if (!file.open(QIODevice::WriteOnly) || !saveLayout(&file, nullptr) || !file.commit())
            std::fprintf(stderr, "%s\n", qPrintable(file.errorString()));
        DockMainWindow::closeEvent(event);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto* workspace = new Workspace;           // deletes itself when it is closed
    workspace->setSplitPanelsByDragging(true); // options come before panes
    workspace->setHighlightCurrentTab(true);
    workspace->setEmptiedPanesClose(true);
    if (!workspace->restoreLast())
        workspace->arrange();

    // Arrangements with names, and a menu for them.
    auto* named = new NamedWorkspaces(workspace);
    named->setFolder(Workspace::folder().filePath(QStringLiteral("workspaces")));
    auto* menu = new NamedWorkspacesMenu(workspace);
    menu->setWorkspaces(named);
    workspace->menuBar()->addMenu(menu);

    workspace->show();
    return QApplication::exec();
}
