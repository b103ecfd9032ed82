#pragma once

#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>

#include <QPersistentModelIndex>
#include <QPointer>
#include <QStringList>
#include <QTimer>

class QFrame;
class QKeyEvent;
class QLabel;
class QMenu;

namespace Kestrel::UI {

struct FavoritesView::Private {
    explicit Private(FavoritesView* view);

    void makeUndoBar();
    void placeUndoBar();
    void showUndoBar(const QString& text);
    void forgetRemoved();
    void expandNew(const QModelIndex& parent, int first, int last);
    void activate(const QModelIndex& index);
    void ask();
    void mark();
    bool isOwnKey(const QKeyEvent& event) const;
    bool press(const QKeyEvent& event);
    void fillMenu(QMenu& menu, const QModelIndex& index);
    void fillFavoriteMenu(QMenu& menu, const QModelIndex& index);

    FavoritesView* const q;
    QPointer<FavoritesModel> model;
    bool offersNewWindow = false;
    QByteArray currentPlace;
    QPersistentModelIndex hovered;
    QTimer hoverTimer;
    QStringList removed; ///< ids, the last one last
    QTimer undoTimer;
    QFrame* undoBar = nullptr;
    QLabel* undoLabel = nullptr;
};

} // namespace Kestrel::UI
