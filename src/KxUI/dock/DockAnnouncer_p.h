#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>

class QWidget;

namespace Kestrel::UI {

class Dock;
class DockMainWindow;

/** Tells the host what became of its pages. While the workspace is being changed nothing is told:
    a host may delete any page, pane or window, and the main window too, in what it is told. When
    the outermost change is over it hears everything, in order. Interface thread. */
class DockAnnouncer : public QObject {
    Q_OBJECT

public:
    enum class News { Added, Removed, Activated };

    explicit DockAnnouncer(DockMainWindow& workspace);
    ~DockAnnouncer() override;

    /** Tells at the end of the change under way, at once without one. What does not exist any more
        by then is not told of. */
    void tell(News news, Dock* dock, QWidget* page);
    /** The same of anything else: `say` emits a signal of `who`. */
    void tell(QObject* who, std::function<void()> say);
    /** Tells when control is back in the event loop, or at the end of the next change. */
    void tellLater(News news, Dock* dock, QWidget* page);
    /** Tells at once, of a page that will not exist later. */
    void tellNow(News news, Dock* dock, QWidget* page);

    /** From here on nobody is told anything. */
    void silence();

private:
    friend class DockChange;
    struct Item {
        QPointer<QObject> who;
        QPointer<QObject> what;
        std::function<void()> say;
    };
    Item item(News news, Dock* dock, QWidget* page);
    void flush();

    DockMainWindow& m_workspace;
    std::deque<Item> m_items; // a restored workspace tells of thousands of pages
    int m_changes = 0;        // under way, one inside another
    bool m_silent = false;
};

/** A change of a workspace is under way while one is alive. The end of the outermost one runs host
    code: nothing but the end of a function may follow it. */
class DockChange {
public:
    /** Null, for a pane without a workspace, holds nothing. */
    explicit DockChange(DockMainWindow* workspace);
    ~DockChange();
    DockChange(const DockChange&) = delete;
    DockChange& operator=(const DockChange&) = delete;

private:
    QPointer<DockMainWindow> m_workspace;
};

} // namespace Kestrel::UI
