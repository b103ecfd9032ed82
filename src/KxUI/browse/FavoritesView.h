#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QTreeView>

#include <memory>

namespace Kestrel::UI {

class FavoritesModel;

/** The places of a FavoritesModel, beside a browser. A click or Return goes to one; favourites are
    reordered by drag and drop, which also takes folders from elsewhere. Whether a place can be
    reached is asked when it is clicked, or pointed at for half a second; one that cannot be is
    greyed and can still be gone to.

    Keys, while it has the focus: Alt+1 to Alt+9 go to the first nine favourites, Alt+Shift+Up and
    Alt+Shift+Down move one, F2 renames it, Delete removes it, Ctrl+Z brings it back, for ten
    seconds. Interface thread. */
class KXUI_EXPORT FavoritesView : public QTreeView {
    Q_OBJECT
    Q_PROPERTY(bool offersNewWindow READ offersNewWindow WRITE setOffersNewWindow NOTIFY
                   offersNewWindowChanged)
    Q_PROPERTY(
        QByteArray currentPlace READ currentPlace WRITE setCurrentPlace NOTIFY currentPlaceChanged)

public:
    /** Without a model. */
    explicit FavoritesView(QWidget* parent = nullptr);
    ~FavoritesView() override;

    /** The model, if it is one of places; null for others. */
    FavoritesModel* favoritesModel() const;
    /** Borrows a FavoritesModel. */
    void setModel(QAbstractItemModel* model) override;

    /** Whether the menu has "Open in New Window"; at first not. */
    bool offersNewWindow() const;
    void setOffersNewWindow(bool offers);

    /** The place that the host shows, which is marked here; empty for none. */
    QByteArray currentPlace() const;
    void setCurrentPlace(const QByteArray& path);

public Q_SLOTS:
    /** Goes to the favourite of that number, from 0 to 8. */
    void activateFavorite(int number);
    /** Removes the current favourite; undoRemove() brings it back for ten seconds. */
    void removeCurrent();
    /** Brings back what was removed last, within ten seconds. */
    void undoRemove();
    /** Adds a group and begins to name it. */
    void addGroup();

Q_SIGNALS:
    /** The user wants to go to a place: a folder, a file, or an address of the model's schemes. */
    void placeActivated(const QByteArray& path);
    /** The same, in another window. */
    void newWindowRequested(const QByteArray& path);
    /** offersNewWindow() is another. */
    void offersNewWindowChanged(bool offers);
    /** currentPlace() is another. */
    void currentPlaceChanged(const QByteArray& path);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
