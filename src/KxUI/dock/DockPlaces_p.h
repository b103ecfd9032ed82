#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSizePolicy>
#include <QVector>

class QWidget;

namespace Kestrel::UI {

class Dock;
class DockMainWindow;
class DockSplitter;

/** Remembers where pages were, so that they come back there, and closes the panes that they leave
    empty, when the workspace wants that. */
class DockPlaces : public QObject {
    Q_OBJECT

public:
    explicit DockPlaces(DockMainWindow& workspace);
    ~DockPlaces() override;

    void pageCame(Dock* dock, const QWidget* page);
    void pageLeft(Dock* dock, const QWidget* page);
    /** To be called while the pane still stands in its splitter. */
    void paneCloses(Dock* dock);
    void dragEnded();
    /** Closes the panes that are left with no page; without this call it is done later. */
    void settle();

    /** The pane for a page that is in none, made where there is none; null when the host makes
        none. */
    Dock* paneFor(const QWidget& page);
    /** Shows the whole of a pane: no other one has its room, and it has some itself. */
    void giveRoom(Dock& dock);
    /** Closes a pane without pages, unless it is the last one of the main window. */
    void closeEmpty(Dock* dock);

private:
    /** Where a page goes that is opened again: the first of these that there still is. */
    struct Home {
        QPointer<Dock> pane;   // that it was taken out of last
        QPointer<Dock> docked; // that it was in last in the main window
        // For the latter when it has closed, where it stood and what it was there.
        QString id;
        QPointer<DockSplitter> splitter;
        int index = 0;
        QList<int> sizes;
        QSizePolicy policy;
    };

    Dock* reopen(const Home& home);
    void endExpansion(const QWidget* window, const Dock* except);
    void settleLater();

    DockMainWindow& m_workspace;
    QHash<QString, Home> m_homes;      // by the object name of the page
    QVector<QPointer<Dock>> m_emptied; // lost their last page and may close
};

} // namespace Kestrel::UI
