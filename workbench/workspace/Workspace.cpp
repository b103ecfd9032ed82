#include "workspace/Workspace.h"

#include "workspace/BuiltInLayouts.h"
#include "workspace/PageKinds.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/settings/AppSettings.h>

#include <QBuffer>
#include <QFile>
#include <QSaveFile>
#include <QStackedWidget>

namespace Kestrel::Workbench {

namespace {

QString layoutKey() {
    return QStringLiteral("workspace/layout");
}

/** Gives a pane that was dragged to nothing, or gave all its room to another, a share again. */
void makeRoom(UI::Dock* dock) {
    QWidget* child = dock;
    for (QWidget* parent = dock->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* splitter = qobject_cast<UI::DockSplitter*>(parent)) {
            QList<int> sizes = splitter->sizes();
            const int index = splitter->indexOf(child);
            if (index >= 0 && sizes.at(index) == 0) {
                const int length = splitter->orientation() == Qt::Horizontal ? splitter->width()
                                                                             : splitter->height();
                sizes[index] = qMax(1, length / sizes.size());
                splitter->setSizes(sizes);
            }
        }
        child = parent;
    }
}

} // namespace

Workspace::Workspace(Session* session)
    : m_session(session) {
    // Its owner deletes it.
    setAttribute(Qt::WA_DeleteOnClose, false);
    setSplitPanelsByDragging(true);
    setHighlightCurrentTab(true);
    connect(this, &DockMainWindow::widgetRemoved, this,
            [this](UI::Dock* dock, QWidget* page) { m_homes.insert(page->objectName(), dock); });
    // A page comes into its window before the window is known to float.
    const auto nameLater = [this](auto signal) {
        connect(this, signal, this, &Workspace::nameWindows, Qt::QueuedConnection);
    };
    nameLater(&DockMainWindow::widgetAdded);
    nameLater(&DockMainWindow::widgetRemoved);
    nameLater(&DockMainWindow::widgetActivated);
}

Workspace::~Workspace() {
    // From here on the panes have nobody to tell what becomes of their pages.
    disconnect(this, nullptr, this, nullptr);
    destroyPages();
}

void Workspace::destroyPages() {
    for (const QPointer<QWidget>& page : qAsConst(m_pages))
        delete page;
    m_pages.clear();
}

QWidget* Workspace::page(const QString& id) {
    const PageKind* kind = pageKind(id);
    if (!kind)
        return nullptr;
    QPointer<QWidget>& page = m_pages[id];
    if (!page) {
        page = kind->make(m_session);
        page->setObjectName(id);
        page->setWindowTitle(kind->translatedTitle());
        emit pageMade(id, page);
    }
    return page;
}

QWidget* Workspace::createPage(QString& id) {
    return page(id);
}

bool Workspace::holdsPage(const QString& id) const {
    return UI::Dock::dockForWidget(m_pages.value(id)) != nullptr;
}

bool Workspace::showsPage(const QString& id) const {
    const QWidget* page = m_pages.value(id);
    const UI::Dock* dock = UI::Dock::dockForWidget(page);
    return dock && dock->currentWidget() == page;
}

void Workspace::showPage(const QString& id) {
    QWidget* wanted = page(id);
    if (!wanted)
        return;
    UI::Dock* home = UI::Dock::dockForWidget(wanted);
    if (!home) {
        home = homeOf(id);
        home->addWidget(wanted, true, false);
    }
    home->setCurrentWidget(wanted);
    const auto all = docks();
    for (UI::Dock* dock : all) {
        if (dock != home && dock->window() == home->window())
            dock->setExpanded(false);
    }
    makeRoom(home);
    if (isVisible()) {
        home->window()->show();
        home->window()->raise();
        home->window()->activateWindow();
    }
    wanted->setFocus(Qt::OtherFocusReason);
}

void Workspace::closePage(const QString& id) {
    QWidget* closed = m_pages.value(id);
    if (UI::Dock* dock = UI::Dock::dockForWidget(closed))
        dock->closeTab(dock->stack()->indexOf(closed));
}

UI::Dock* Workspace::homeOf(const QString& id) {
    const auto all = docks();
    for (UI::Dock* dock : {m_homes.value(id).data(), activeDock()}) {
        if (dock && all.contains(dock))
            return dock;
    }
    if (!all.isEmpty())
        return all.first();
    UI::Dock* fresh = createDock();
    addWidget(fresh);
    return fresh;
}

void Workspace::arrange(const BuiltInLayout& layout) {
    const QString problem = restore(layout.document());
    Q_ASSERT_X(problem.isEmpty(), "arrange", qPrintable(problem));
    Q_UNUSED(problem)
}

QString Workspace::restore(QIODevice* device) {
    UI::DockLayoutError error;
    if (restoreWholeLayout(device, false, &error))
        return {};
    return tr("%1 (line %2, column %3)").arg(error.reason).arg(error.line).arg(error.column);
}

QString Workspace::restore(QByteArray document) {
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return restore(&buffer);
}

QString Workspace::saveTo(const QString& name) {
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly) && saveLayout(&file, nullptr) && file.commit())
        return {};
    return file.errorString();
}

QString Workspace::loadFrom(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    return restore(&file);
}

void Workspace::remember() {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (saveLayout(&buffer, nullptr))
        UI::AppSettings().setValue(layoutKey(), QString::fromUtf8(buffer.data()));
}

bool Workspace::recall(QString* problem) {
    const QString document = UI::AppSettings().value(layoutKey()).toString();
    if (document.isEmpty())
        return false;
    *problem = restore(document.toUtf8());
    return problem->isEmpty();
}

/** A floating window is called like the pages that it shows. */
void Workspace::nameWindows() {
    const auto windows = floatingWindows();
    for (UI::DockWindow* window : windows) {
        QStringList titles;
        const auto panes = window->panes();
        for (const UI::Dock* dock : panes) {
            if (dock->currentWidget())
                titles << dock->currentWidget()->windowTitle();
        }
        window->setWindowTitle(titles.join(tr(", ")));
    }
}

} // namespace Kestrel::Workbench
