#include "workspace/Workspace.h"

#include "workspace/BuiltInLayouts.h"
#include "workspace/PageKinds.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/TitleBarButton.h>
#include <KxUI/settings/AppSettings.h>

#include <QBuffer>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScreen>
#include <QStackedWidget>

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
            [this](UI::Dock* dock, QWidget* page) { m_homes[page->objectName()].pane = dock; });
    // A page comes into its window before the window is known to float.
    const auto later = [this](auto signal, void (Workspace::*act)()) {
        connect(this, signal, this, act, Qt::QueuedConnection);
    };
    later(&DockMainWindow::widgetAdded, &Workspace::nameWindows);
    later(&DockMainWindow::widgetRemoved, &Workspace::nameWindows);
    later(&DockMainWindow::widgetActivated, &Workspace::nameWindows);
    later(&DockMainWindow::widgetAdded, &Workspace::settle);
    later(&DockMainWindow::widgetRemoved, &Workspace::settle);
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

/** Gives the panes of a window their room again, if another than `dock` has all of it. */
void Workspace::endExpansion(const QWidget* window, const UI::Dock* dock) {
    const auto all = docks();
    for (UI::Dock* other : all) {
        if (other != dock && other->window() == window)
            other->setExpanded(false);
    }
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
    endExpansion(home->window(), home);
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
    const Home home = m_homes.value(id);
    for (UI::Dock* dock : {home.pane.data(), home.docked.data()}) {
        if (dock && all.contains(dock))
            return dock;
    }
    if (UI::Dock* reopened = reopen(home))
        return reopened;
    if (UI::Dock* active = activeDock())
        return active;
    const auto here = panes();
    if (!here.isEmpty())
        return here.first();
    UI::Dock* fresh = createDock();
    addWidget(fresh);
    return fresh;
}

/** A new pane where one was that has closed; null when the place is gone, too. */
UI::Dock* Workspace::reopen(const Home& home) {
    if (!home.splitter || home.splitter->window() != this)
        return nullptr;
    UI::Dock* fresh = createDock();
    fresh->setObjectName(home.id);
    fresh->setSizePolicy(home.policy);
    home.splitter->insertWidget(std::min(home.index, home.splitter->count()), fresh);
    if (home.sizes.size() == home.splitter->count())
        home.splitter->setSizes(home.sizes);
    return fresh;
}

UI::Dock* Workspace::createDock() {
    UI::Dock* dock = DockMainWindow::createDock();
    connect(dock->stack(), &QStackedWidget::widgetRemoved, dock, [this, dock] {
        if (dock->count() == 0)
            m_emptied.append(dock);
    });
    // The button closes tabs; where there are none, it closes the pane.
    const auto buttons = dock->findChildren<UI::TitleBarButton*>();
    connect(buttons.last(), &QPushButton::clicked, dock, [this, dock] { closeEmpty(dock); });
    dock->installEventFilter(this);
    return dock;
}

bool Workspace::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        auto* dock = static_cast<UI::Dock*>(watched);
        endExpansion(dock->window(), nullptr);
        keepPlace(dock);
    }
    return DockMainWindow::eventFilter(watched, event);
}

/** Whether a page is on its way from pane to pane, and a window of its own meanwhile. */
bool Workspace::isDragging() const {
    return std::any_of(m_pages.begin(), m_pages.end(), [](const QPointer<QWidget>& page) {
        return page && page->isWindow() && page->isVisible();
    });
}

/** After pages have come and gone: notes where those in the main window are, and closes the panes
    that are left with none. */
void Workspace::settle() {
    // What is dragged may come back.
    if (isDragging())
        return;
    const auto docked = panes();
    for (UI::Dock* dock : docked) {
        for (int i = 0; i < dock->count(); ++i)
            m_homes[dock->widget(i)->objectName()].docked = dock;
    }
    const auto emptied = std::exchange(m_emptied, {});
    for (const QPointer<UI::Dock>& dock : emptied) {
        if (dock)
            closeEmpty(dock);
    }
}

void Workspace::closeEmpty(UI::Dock* dock) {
    const bool isLast = dock->dockWindow() == this && dock->singlePanel();
    if (dock->count() > 0 || isLast || !docks().contains(dock))
        return;
    if (activeDock() == dock)
        nextDock();
    dock->close();
}

/** Before a pane closes: where its pages, and those that have left it, find their place again. */
void Workspace::keepPlace(UI::Dock* dock) {
    // What stands in the splitter may be a branch that this pane is the last of.
    QWidget* child = dock;
    auto* splitter = qobject_cast<UI::DockSplitter*>(dock->parentWidget());
    while (splitter && splitter->count() == 1) {
        child = splitter;
        splitter = qobject_cast<UI::DockSplitter*>(splitter->parentWidget());
    }
    if (!splitter)
        return;
    for (Home& home : m_homes) {
        if (home.docked != dock)
            continue;
        home.id = dock->objectName();
        home.splitter = splitter;
        home.index = splitter->indexOf(child);
        home.sizes = splitter->realSizes();
        home.policy = child->sizePolicy();
    }
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
    if (!saveLayout(&buffer, nullptr))
        return;
    QString document = QString::fromUtf8(buffer.data());
    if (isMaximized() && normalGeometry().isValid()) {
        // The place to come back to when it is no longer maximized.
        const QRect normal = normalGeometry().translated(-m_frameOffset);
        static const QRegularExpression place(
            QStringLiteral("<window x=\"-?\\d+\" y=\"-?\\d+\" w=\"\\d+\" h=\"\\d+\""));
        const QRegularExpressionMatch first = place.match(document);
        document.replace(first.capturedStart(), first.capturedLength(),
                         QStringLiteral("<window x=\"%1\" y=\"%2\" w=\"%3\" h=\"%4\"")
                             .arg(normal.x())
                             .arg(normal.y())
                             .arg(normal.width())
                             .arg(normal.height()));
    }
    UI::AppSettings settings;
    settings.setValue(layoutKey(), document);
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

void Workspace::moveEvent(QMoveEvent* event) {
    DockMainWindow::moveEvent(event);
    if (isVisible() && !isMaximized() && !isFullScreen())
        m_frameOffset = geometry().topLeft() - pos();
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
