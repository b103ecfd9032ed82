#pragma once

#include <KxUI/dock/DockAnnouncer_p.h>
#include <KxUI/dock/DockLayout_p.h>
#include <KxUI/dock/DockTreeEdit_p.h>

#include <QHash>
#include <QList>
#include <QPointer>
#include <QSet>

#include <functional>

class QWidget;

namespace Kestrel::UI {

class Dock;
class DockMainWindow;
class DockSplitter;
class DockWindow;

/** Takes the arrangement of a workspace as values, and builds values into a workspace. One object
    does one restore; while it lives no other restore of that workspace begins. */
class DockLayoutBuilder {
public:
    /** Gives the page of an id, null for none. */
    using PageSource = std::function<QWidget*(QString& id)>;

    static Layout capture(const DockMainWindow& workspace, const QWidget* focus);

    DockLayoutBuilder(DockMainWindow& workspace, bool fillScreen);
    ~DockLayoutBuilder();
    DockLayoutBuilder(const DockLayoutBuilder&) = delete;
    DockLayoutBuilder& operator=(const DockLayoutBuilder&) = delete;

    /** Takes the present arrangement out and builds `layout` in its place with the pages of
        `pages`. */
    void replaceArrangement(const Layout& layout, const PageSource& pages);

    /** The same with the pages that are in the workspace; only missing ones are created, before
        anything changes. Pages that the layout does not name are taken out and reported. */
    void replaceKeepingPages(const Layout& layout);

    /** Hides and detaches what was taken out, and deletes it when control is back in the event
        loop: the restore may have been started from inside one of its windows. */
    void discardOldArrangement();

private:
    struct Floating {
        QPointer<DockWindow> window;
        int stacking;
    };

    void takeOutArrangement();
    void build(const Layout& layout);
    void fillWindow(DockWindow& window, const LayoutWindow& layout, bool isMain);
    void fillSplitter(const QPointer<DockSplitter>& splitter, const LayoutSplitter& layout);
    Dock* makePane(const LayoutPane& layout);
    QWidget* takePage(const LayoutPage& layout);
    QHash<QString, QPointer<QWidget>> presentPages() const;
    void takeOut(Dock& dock);
    void showFloating();
    void placeWindow(DockWindow& window, const SavedWindow& saved, bool isMain);

    // The host, asked for a page, a pane or a window, may destroy any of them, and this one too.
    const DockChange m_change;
    const QPointer<DockMainWindow> m_workspace;
    const bool m_fillScreen;
    bool m_keepsMain = false; // hidden when it is hidden, and in its place without another one
    DockTreeEdit m_edit;
    PageSource m_pages;
    QSet<const QWidget*> m_placed;
    QPointer<QWidget> m_oldCentral;
    QList<QPointer<DockWindow>> m_oldFloating;
    QVector<QPointer<Dock>> m_oldPanes;
    std::vector<Floating> m_floating; // to be shown
};

} // namespace Kestrel::UI
