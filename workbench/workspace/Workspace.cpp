#include "workspace/Workspace.h"

#include "workspace/BuiltInLayouts.h"
#include "workspace/PageKinds.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/settings/AppSettings.h>

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QSaveFile>
#include <QScreen>
#include <QStackedWidget>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

QString layoutKey() {
    return QStringLiteral("workspace/layout");
}

QString desktopKey() {
    return QStringLiteral("workspace/desktop");
}

/** What all screens cover together. */
QRect desktop() {
    return QGuiApplication::primaryScreen()->virtualGeometry();
}

/** Brings the whole of a window onto the screen that it is on. */
void fitOnScreen(QWidget* window) {
    if (window->isMaximized() || window->isFullScreen())
        return;
    const QRect area = window->screen()->availableGeometry();
    window->resize(window->size().boundedTo(area.size()));
    const QPoint last(area.right() + 1 - window->width(), area.bottom() + 1 - window->height());
    window->move(std::max(area.left(), std::min(window->x(), last.x())),
                 std::max(area.top(), std::min(window->y(), last.y())));
}

} // namespace

Workspace::Workspace(Session* session)
    : m_session(session) {
    // Its owner deletes it.
    setAttribute(Qt::WA_DeleteOnClose, false);
    setSplitPanelsByDragging(true);
    setHighlightCurrentTab(true);
    setEmptiedPanesClose(true);
    // A page comes into its window before the window is known to float.
    const auto later = [this](auto signal, void (Workspace::*act)()) {
        connect(this, signal, this, act, Qt::QueuedConnection);
    };
    later(&DockMainWindow::widgetAdded, &Workspace::nameWindows);
    later(&DockMainWindow::widgetRemoved, &Workspace::nameWindows);
    later(&DockMainWindow::widgetActivated, &Workspace::nameWindows);
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
    DockMainWindow::showPage(page(id));
}

void Workspace::closePage(const QString& id) {
    QWidget* closed = m_pages.value(id);
    if (UI::Dock* dock = UI::Dock::dockForWidget(closed))
        dock->closeTab(dock->stack()->indexOf(closed));
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
    return error.message();
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
    if (!saveLayout(&buffer, nullptr))
        return;
    UI::AppSettings settings;
    settings.setValue(layoutKey(), QString::fromUtf8(buffer.data()));
    settings.setValue(desktopKey(), desktop());
}

bool Workspace::recall(QString* problem) {
    const UI::AppSettings settings;
    const QString document = settings.value(layoutKey()).toString();
    if (document.isEmpty())
        return false;
    *problem = restore(document.toUtf8());
    if (!problem->isEmpty())
        return false;
    // What hung over an edge of other screens may hardly be seen on these.
    if (settings.value(desktopKey()).toRect() != desktop()) {
        fitOnScreen(this);
        const auto floating = floatingWindows();
        for (UI::DockWindow* window : floating)
            fitOnScreen(window);
    }
    return true;
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
