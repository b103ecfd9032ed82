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
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <utility>

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

/** What the title bar and the edges take. Nobody knows before the window is shown; until then a
    title bar is reckoned with. */
QSize frameOf(const QWidget& window) {
    const QSize frame = window.frameGeometry().size() - window.geometry().size();
    if (!frame.isNull())
        return frame;
    return {0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window)};
}

/** Brings the whole of a window onto the screen that it is on. */
void fitOnScreen(QWidget* window) {
    if (window->isMaximized() || window->isFullScreen())
        return;
    const QRect area = window->screen()->availableGeometry();
    const QSize frame = frameOf(*window);
    window->resize(window->size().boundedTo(area.size() - frame));
    const QSize size = window->size() + frame;
    const QPoint last(area.right() + 1 - size.width(), area.bottom() + 1 - size.height());
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
    if (!dock || dock->currentWidget() != page)
        return false;
    const QWidget* window = page->window();
    const bool isOpen = window == this || window->isVisible();
    return isOpen && !window->isMinimized() && page->isVisibleTo(window);
}

void Workspace::showPage(const QString& id) {
    QWidget* shown = page(id);
    if (UI::Dock* dock = UI::Dock::dockForWidget(shown); dock && dock->window()->isMinimized())
        dock->window()->setWindowState(dock->window()->windowState() & ~Qt::WindowMinimized);
    DockMainWindow::showPage(shown);
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
    m_fitsScreen = settings.value(desktopKey()).toRect() != desktop();
    if (m_fitsScreen)
        fitWindows();
    return true;
}

void Workspace::fitWindows() {
    fitOnScreen(this);
    const auto floating = floatingWindows();
    for (UI::DockWindow* window : floating)
        fitOnScreen(window);
}

void Workspace::showEvent(QShowEvent* event) {
    DockMainWindow::showEvent(event);
    if (!std::exchange(m_fitsScreen, false))
        return;
    // Window managers frame a window some time after it is shown.
    constexpr int framedWithin = 300;
    QTimer::singleShot(framedWithin, this, &Workspace::fitWindows);
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
