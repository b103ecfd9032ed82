#include <KxUI/dock/DockSanity_p.h>

#include <KxUI/dock/DockDrag_p.h>
#include <KxUI/dock/DockMainWindow_p.h>
#include <KxUI/dock/DockSplitter.h>
#include <KxUI/dock/Dock_p.h>
#include <KxUI/dock/FocusKeeper_p.h>

#include <QSet>

namespace Kestrel::UI {

namespace {

class Inspector {
public:
    explicit Inspector(const DockMainWindow& workspace)
        : m_workspace(workspace) {}

    QString inspectWindow(const DockWindow& window) {
        if (window.controller() != &m_workspace)
            return QStringLiteral("a window has another controller");
        if (window.isFloating() != (&window != &m_workspace))
            return QStringLiteral("the floating flag of a window is wrong");
        const DockSplitter* root = window.rootSplitter();
        if (!root || root != window.centralWidget())
            return QStringLiteral("the root splitter is not the central widget");
        return inspectBranch(*root, true);
    }

    QString inspectDrag() const {
        const DockDragSession& drag = DockDragSession::instance();
        if (!drag.isActive())
            return drag.hoverWidget() ? QStringLiteral("a drop indicator without a drag")
                                      : QString();
        if (!drag.page() || !drag.source() || !drag.controller())
            return QStringLiteral("a drag lost its page, its source or its workspace");
        if (drag.page()->parentWidget() || m_pages.contains(drag.page()))
            return QStringLiteral("a dragged page is still in a pane");
        return {};
    }

private:
    QString inspectBranch(const DockSplitter& splitter, bool isRoot) {
        if (splitter.count() == 0 && !isRoot)
            return QStringLiteral("an empty splitter inside the tree");
        for (int i = 0; i < splitter.count(); ++i) {
            const QWidget* child = splitter.widget(i);
            if (child->parentWidget() != &splitter)
                return QStringLiteral("a child of a splitter has another parent");
            QString trouble;
            if (const auto* branch = qobject_cast<const DockSplitter*>(child))
                trouble = inspectBranch(*branch, false);
            else if (const auto* dock = qobject_cast<const Dock*>(child))
                trouble = inspectPane(*dock);
            if (!trouble.isEmpty())
                return trouble;
        }
        return {};
    }

    QString inspectPane(const Dock& dock) {
        if (dock.controller() != &m_workspace)
            return QStringLiteral("a pane has another controller");
        const DockPages* stack = DockPrivate::of(dock).pages;
        if (!stack->isInStep())
            return QStringLiteral("the tabs are not those of the pages");
        for (int i = 0; i < stack->count(); ++i) {
            const QWidget* page = stack->widget(i);
            if (page->parentWidget() != stack)
                return QStringLiteral("a page has another parent than its stack");
            if (page->windowHandle() && !page->testAttribute(Qt::WA_NativeWindow))
                return QStringLiteral("a page in a pane still has a native window");
            if (m_pages.contains(page))
                return QStringLiteral("a page is in two places");
            m_pages.insert(page);
        }
        if (dock.focusProxy() && !isInside(&dock, dock.focusProxy()))
            return QStringLiteral("the focus of a pane lies outside it");
        return {};
    }

    const DockMainWindow& m_workspace;
    QSet<const QWidget*> m_pages;
};

} // namespace

QString checkSanity(const DockMainWindow& workspace) {
    Inspector inspector(workspace);
    const auto windows = DockMainWindowPrivate::windows(workspace);
    for (const DockWindow* window : windows) {
        const QString trouble = inspector.inspectWindow(*window);
        if (!trouble.isEmpty())
            return trouble;
    }
    return inspector.inspectDrag();
}

} // namespace Kestrel::UI
