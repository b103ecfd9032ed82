// A workspace of panes, its layout saved and restored.

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/NamedWorkspaces.h>
#include <KxUI/dock/NamedWorkspacesMenu.h>

#include <QApplication>
#include <QBuffer>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTextEdit>

#include <cstdio>

using namespace Kestrel::UI;

namespace {

QWidget* makePage(const QString& id) {
    auto* page = new QTextEdit;
    page->setObjectName(id);  // what layouts know it by
    page->setWindowTitle(id); // its tab
    return page;
}

class Workspace : public DockMainWindow {
public:
    QWidget* createPage(QString& id) override { return makePage(id); }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto* workspace = new Workspace;           // deletes itself when it is closed
    workspace->setSplitPanelsByDragging(true); // options come before panes
    workspace->setHighlightCurrentTab(true);
    workspace->setEmptiedPanesClose(true);

    Dock* viewer = workspace->createDock();
    workspace->addWidget(viewer);
    viewer->addWidget(makePage(QStringLiteral("Viewer")), true, false);
    Dock* properties = viewer->split(Qt::Horizontal, false);
    properties->addWidget(makePage(QStringLiteral("Properties")), true, false);
    properties->addWidget(makePage(QStringLiteral("Scopes")), false, false);
    Dock* graph = viewer->split(Qt::Vertical, false);
    graph->addWidget(makePage(QStringLiteral("Node Graph")), true, false);

    // A layout is an XML document on any device; a refused one changes nothing.
    QBuffer layout;
    layout.open(QIODevice::ReadWrite);
    workspace->saveLayout(&layout, nullptr);
    layout.seek(0);
    DockLayoutError error;
    if (!workspace->restoreWholeLayout(&layout, false, &error))
        std::fprintf(stderr, "%s\n", qPrintable(error.message()));

    // Arrangements with names, and a menu for them.
    auto* named = new NamedWorkspaces(workspace);
    named->setFolder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    auto* menu = new NamedWorkspacesMenu(workspace);
    menu->setWorkspaces(named);
    workspace->menuBar()->addMenu(menu);

    workspace->resize(720, 360);
    workspace->show();
    return QApplication::exec();
}
