#include <KxUI/browse/FavoritesView.h>

#include <KxUI/browse/FavoritesView_p.h>
#include <KxUI/browse/PlaceDelegate_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

namespace Kestrel::UI {

FavoritesView::FavoritesView(QWidget* parent)
    : QTreeView(parent)
    , d(std::make_unique<Private>(this)) {
    setHeaderHidden(true);
    setIndentation(14);
    setUniformRowHeights(true);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers); // F2 is ours, before the shortcuts of the window
    setExpandsOnDoubleClick(false);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::CopyAction);
    setDropIndicatorShown(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setItemDelegate(new PlaceDelegate(this));
    setAccessibleName(tr("Places"));
    setMinimumWidth(120);
}

FavoritesView::~FavoritesView() = default;

FavoritesModel* FavoritesView::favoritesModel() const {
    return d->model;
}

void FavoritesView::setModel(QAbstractItemModel* model) {
    if (QAbstractItemModel* const old = QTreeView::model())
        disconnect(old, nullptr, this, nullptr);
    d->model = qobject_cast<FavoritesModel*>(model);
    QTreeView::setModel(model);
    if (!model)
        return;
    // Qt's own connections to the new model are made by now.
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& parent, int first, int last) {
                d->expandNew(parent, first, last);
            });
    d->expandNew(QModelIndex(), 0, model->rowCount() - 1);
    d->mark();
}

bool FavoritesView::offersNewWindow() const {
    return d->offersNewWindow;
}

void FavoritesView::setOffersNewWindow(bool offers) {
    KXUI_INTERFACE_THREAD(this);
    if (offers == d->offersNewWindow)
        return;
    d->offersNewWindow = offers;
    Q_EMIT offersNewWindowChanged(offers);
}

QByteArray FavoritesView::currentPlace() const {
    return d->currentPlace;
}

void FavoritesView::setCurrentPlace(const QByteArray& path) {
    KXUI_INTERFACE_THREAD(this);
    if (path == d->currentPlace)
        return;
    d->currentPlace = path;
    d->mark();
    Q_EMIT currentPlaceChanged(path);
}

void FavoritesView::activateFavorite(int number) {
    KXUI_INTERFACE_THREAD(this);
    if (d->model)
        d->activate(d->model->favoriteAt(number));
}

void FavoritesView::removeCurrent() {
    KXUI_INTERFACE_THREAD(this);
    const QModelIndex index = currentIndex();
    const QString id = index.data(FavoritesModel::IdRole).toString();
    if (!d->model || !d->model->file() || id.isEmpty())
        return;
    const QString title = index.data().toString();
    const QPointer<FavoritesView> alive(this);
    d->model->file()->remove(id);
    if (!alive)
        return;
    d->removed << id;
    d->showUndoBar(tr("Removed %1").arg(title));
}

void FavoritesView::undoRemove() {
    KXUI_INTERFACE_THREAD(this);
    if (d->removed.isEmpty() || !d->model || !d->model->file())
        return;
    const QString id = d->removed.takeLast();
    const QPointer<FavoritesView> alive(this);
    d->model->file()->restore(id);
    if (!alive)
        return;
    if (d->model)
        setCurrentIndex(d->model->indexOf(id));
    if (d->removed.isEmpty())
        d->forgetRemoved();
}

void FavoritesView::addGroup() {
    KXUI_INTERFACE_THREAD(this);
    if (!d->model || !d->model->file())
        return;
    const QPointer<FavoritesView> alive(this);
    const QString id = d->model->file()->addGroup(tr("New Group"));
    if (!alive || !d->model)
        return;
    const QModelIndex index = d->model->indexOf(id);
    setCurrentIndex(index);
    if (index.isValid())
        edit(index);
}

bool FavoritesView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && d->isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTreeView::event(event);
}

void FavoritesView::keyPressEvent(QKeyEvent* event) {
    if (d->isOwnKey(*event) && d->press(*event))
        event->accept();
    else
        QTreeView::keyPressEvent(event);
}

void FavoritesView::mouseMoveEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->pos());
    if (index != d->hovered) {
        d->hovered = index;
        d->hoverTimer.start();
    }
    QTreeView::mouseMoveEvent(event);
}

void FavoritesView::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasDragging = state() == DraggingState;
    const QPersistentModelIndex index = indexAt(event->pos());
    const bool isOnRow = index.isValid() && visualRect(index).contains(event->pos());
    const bool isClick = event->button() == Qt::LeftButton && index == currentIndex();
    const bool isHeading = index.isValid() && !index.parent().isValid();
    const QPointer<FavoritesView> alive(this);
    QTreeView::mouseReleaseEvent(event);
    if (!alive || wasDragging || !isOnRow || !index.isValid() || event->button() != Qt::LeftButton)
        return;
    const bool isGroup = index.data(FavoritesModel::IsGroupRole).toBool();
    if (isHeading || isGroup)
        setExpanded(index, !isExpanded(index));
    else if (isClick)
        d->activate(index);
}

void FavoritesView::leaveEvent(QEvent* event) {
    d->hoverTimer.stop();
    d->hovered = QModelIndex();
    QTreeView::leaveEvent(event);
}

void FavoritesView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    d->fillMenu(*menu, index);
    if (menu->isEmpty()) {
        delete menu;
        return;
    }
    const QPoint place = isByKey ? visualRect(index).bottomLeft() : event->pos();
    menu->popup(viewport()->mapToGlobal(place));
}

void FavoritesView::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    d->placeUndoBar();
}

} // namespace Kestrel::UI
