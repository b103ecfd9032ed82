#include <KxUI/browse/FavoritesView_p.h>

#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>

#include <QClipboard>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace Kestrel::UI {
namespace {

constexpr int hoverTime = 500;
constexpr int undoTime = 10000;

bool isMoveKey(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) &&
           (event.modifiers() & ~Qt::KeypadModifier) == (Qt::AltModifier | Qt::ShiftModifier);
}

bool isNumberKey(const QKeyEvent& event) {
    return event.key() >= Qt::Key_1 && event.key() <= Qt::Key_9 &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier;
}

bool isPlain(const QKeyEvent& event) {
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

FavoritesView::Private::Private(FavoritesView* view)
    : q(view) {
    hoverTimer.setSingleShot(true);
    hoverTimer.setInterval(hoverTime);
    QObject::connect(&hoverTimer, &QTimer::timeout, q, [this] { ask(); });
    undoTimer.setSingleShot(true);
    undoTimer.setInterval(undoTime);
    QObject::connect(&undoTimer, &QTimer::timeout, q, [this] { forgetRemoved(); });
}

void FavoritesView::Private::makeUndoBar() {
    undoBar = new QFrame(q);
    undoBar->setFrameShape(QFrame::NoFrame);
    undoBar->setAutoFillBackground(true);
    undoBar->setBackgroundRole(QPalette::Window);
    undoLabel = new QLabel(undoBar);
    undoLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* const button = new QToolButton(undoBar);
    button->setText(tr("Undo"));
    button->setFocusPolicy(Qt::NoFocus); // Ctrl+Z does it where the focus is
    button->setToolTip(tr("Brings it back (Ctrl+Z)"));
    QObject::connect(button, &QToolButton::clicked, q, &FavoritesView::undoRemove);
    auto* const row = new QHBoxLayout(undoBar);
    row->setContentsMargins(8, 4, 4, 4);
    row->addWidget(undoLabel, 1);
    row->addWidget(button);
}

void FavoritesView::Private::placeUndoBar() {
    if (!undoBar || undoBar->isHidden())
        return;
    const QRect inside = q->contentsRect();
    const int height = undoBar->sizeHint().height();
    undoBar->setGeometry(inside.x(), inside.bottom() + 1 - height, inside.width(), height);
    undoBar->layout()->activate();
    undoLabel->setText(undoLabel->fontMetrics().elidedText(undoLabel->toolTip(), Qt::ElideRight,
                                                           undoLabel->width()));
}

void FavoritesView::Private::showUndoBar(const QString& text) {
    if (!undoBar)
        makeUndoBar();
    undoLabel->setToolTip(text);
    undoLabel->setAccessibleName(text);
    undoBar->show();
    q->setViewportMargins(0, 0, 0, undoBar->sizeHint().height());
    placeUndoBar();
    undoTimer.start();
}

void FavoritesView::Private::forgetRemoved() {
    undoTimer.stop();
    removed.clear();
    if (undoBar)
        undoBar->hide();
    q->setViewportMargins(0, 0, 0, 0);
}

// What is new is open, but for the long list of somebody else's bookmarks.
void FavoritesView::Private::expandNew(const QModelIndex& parent, int first, int last) {
    if (!model)
        return;
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        const auto section =
            index.data(FavoritesModel::SectionRole).value<FavoritesModel::Section>();
        if (section == FavoritesModel::Desktop)
            continue;
        q->expand(index);
        expandNew(index, 0, model->rowCount(index) - 1);
    }
    if (parent.isValid() && first == 0 && last + 1 == model->rowCount(parent))
        q->expand(parent); // Qt closes a row that has none below it
    mark();
}

void FavoritesView::Private::activate(const QModelIndex& index) {
    const QByteArray path = index.data(FavoritesModel::PathRole).toByteArray();
    if (path.isEmpty() || !model)
        return;
    const QPointer<FavoritesView> alive(q);
    model->askReach(index);
    if (alive)
        Q_EMIT q->placeActivated(path);
}

void FavoritesView::Private::ask() {
    if (model && hovered.isValid())
        model->askReach(hovered);
}

void FavoritesView::Private::mark() {
    // Another current row would end a name that is being typed.
    if (!model || currentPlace.isEmpty() || q->state() == EditingState)
        return;
    const QModelIndex index = model->indexOfPath(currentPlace);
    if (index.isValid())
        q->setCurrentIndex(index);
    else if (q->currentIndex().data(FavoritesModel::PathRole).toByteArray() != currentPlace)
        q->setCurrentIndex(QModelIndex());
}

bool FavoritesView::Private::isOwnKey(const QKeyEvent& event) const {
    if (q->state() == EditingState)
        return false;
    const bool isFavorite = !q->currentIndex().data(FavoritesModel::IdRole).toString().isEmpty();
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isPlain(event))
        return isReturn ||
               (isFavorite && (event.key() == Qt::Key_F2 || event.key() == Qt::Key_Delete));
    if (event.matches(QKeySequence::Undo))
        return !removed.isEmpty();
    return isNumberKey(event) || (isFavorite && isMoveKey(event));
}

bool FavoritesView::Private::press(const QKeyEvent& event) {
    const QModelIndex index = q->currentIndex();
    if (isNumberKey(event)) {
        q->activateFavorite(event.key() - Qt::Key_1);
    } else if (isMoveKey(event)) {
        const QString id = index.data(FavoritesModel::IdRole).toString();
        const QPointer<FavoritesView> alive(q);
        model->moveBy(index, event.key() == Qt::Key_Up ? -1 : 1);
        // A row that changed its group is another one.
        if (alive && model)
            q->setCurrentIndex(model->indexOf(id));
    } else if (event.matches(QKeySequence::Undo)) {
        q->undoRemove();
    } else if (event.key() == Qt::Key_F2) {
        q->edit(index);
    } else if (event.key() == Qt::Key_Delete) {
        q->removeCurrent();
    } else if (index.data(FavoritesModel::PathRole).toByteArray().isEmpty()) {
        if (!index.isValid())
            return false;
        q->setExpanded(index, !q->isExpanded(index));
    } else {
        activate(index);
    }
    return true;
}

void FavoritesView::Private::fillMenu(QMenu& menu, const QModelIndex& index) {
    if (!model)
        return;
    const QByteArray path = index.data(FavoritesModel::PathRole).toByteArray();
    const auto section = index.data(FavoritesModel::SectionRole).value<FavoritesModel::Section>();
    const QPersistentModelIndex row(index);
    if (!path.isEmpty()) {
        menu.addAction(tr("Open"), q, [this, row] { activate(row); });
        if (offersNewWindow)
            menu.addAction(tr("Open in New Window"), q,
                           [this, path] { Q_EMIT q->newWindowRequested(path); });
        menu.addAction(tr("Copy Path"), q, [path] {
            QGuiApplication::clipboard()->setText(FileTexts::name(viewOf(path)));
        });
        const auto addThis = [this, path] {
            if (model && model->file() && !model->file()->contains(path))
                model->file()->add(path);
        };
        if (section != FavoritesModel::Favorites && model->file())
            menu.addAction(tr("Add to Favourites"), q, addThis)
                ->setEnabled(!model->file()->contains(path));
        menu.addSeparator();
    }
    if (section == FavoritesModel::Recent && index.isValid())
        menu.addAction(tr("Clear Recent"), q, [this] {
            if (model)
                model->clearRecent();
        });
    if (model->file() && (section == FavoritesModel::Favorites || !index.isValid()))
        fillFavoriteMenu(menu, index);
}

void FavoritesView::Private::fillFavoriteMenu(QMenu& menu, const QModelIndex& index) {
    const QPersistentModelIndex row(index);
    const auto moving = [this, row](int rows) {
        return [this, row, rows] {
            if (model)
                model->moveBy(row, rows);
        };
    };
    if (!index.data(FavoritesModel::IdRole).toString().isEmpty()) {
        menu.addAction(tr("Rename"), q, [this, row] {
            if (row.isValid())
                q->edit(row);
        });
        menu.addAction(tr("Remove"), q, [this, row] {
            q->setCurrentIndex(row);
            q->removeCurrent();
        });
        menu.addAction(tr("Move Up"), q, moving(-1));
        menu.addAction(tr("Move Down"), q, moving(1));
        menu.addSeparator();
    }
    menu.addAction(tr("New Group"), q, &FavoritesView::addGroup);
    menu.addAction(tr("Import from the Desktop"), q, [this] {
        if (model)
            model->importDesktop();
    });
}

} // namespace Kestrel::UI
