#include <KxUI/browse/BrowserViews_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/values/SearchField.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

#include <algorithm>

namespace Kestrel::UI {

bool FileBrowserPrivate::filterEvent(QObject* watched, QEvent* event) {
    const bool isView = watched == views->current();
    const bool isRows = watched == views->current()->viewport();
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (!isView || !isRowsKey(*static_cast<QKeyEvent*>(event)))
            return false;
        event->accept();
        return true;
    case QEvent::KeyPress:
        if (isView)
            return trigger(*static_cast<QKeyEvent*>(event)) ||
                   pressKey(*static_cast<QKeyEvent*>(event));
        if (watched == filter && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape &&
            filter->text().isEmpty()) {
            area->setFocus(Qt::OtherFocusReason);
            return true;
        }
        return false;
    case QEvent::MouseButtonPress:
        return isRows && pressMouse(*static_cast<QMouseEvent*>(event));
    case QEvent::DragEnter:
    case QEvent::DragMove:
        return isRows && dragOver(*event);
    case QEvent::Drop:
        if (isRows) {
            auto& dropped = *static_cast<QDropEvent*>(event);
            dropped.setDropAction(Qt::CopyAction);
            dropped.accept();
            drop(dropped);
        }
        return isRows;
    default:
        return false;
    }
}

bool FileBrowserPrivate::pressMouse(const QMouseEvent& event) {
    if (event.button() == Qt::BackButton)
        q->back();
    else if (event.button() == Qt::ForwardButton)
        q->forward();
    return event.button() == Qt::BackButton || event.button() == Qt::ForwardButton;
}

QAction* FileBrowserPrivate::actionOf(const QKeyEvent& event) const {
    const QKeySequence keys(event.key() |
                            static_cast<int>(event.modifiers() & ~Qt::KeypadModifier));
    const QList<QAction*> all = q->actions();
    const auto found = std::find_if(all.begin(), all.end(), [&](const QAction* action) {
        return action->isEnabled() && action->shortcuts().contains(keys);
    });
    return found == all.end() ? nullptr : *found;
}

bool FileBrowserPrivate::trigger(const QKeyEvent& event) {
    QAction* const action = actionOf(event);
    if (action)
        action->trigger();
    return action != nullptr;
}

/** What the list takes before a window that has a shortcut of the same key: what moves in it, and
    letters that go on with a name. */
bool FileBrowserPrivate::isRowsKey(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Paste))
        return true;
    if ((held & ~Qt::ShiftModifier) != 0)
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        return views->mode() != FileBrowser::Details;
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Backspace:
        return true;
    default:
        return !event.text().isEmpty() && event.text().front().isPrint() && ahead.isActive(now());
    }
}

bool FileBrowserPrivate::pressKey(QKeyEvent& event) {
    // What the editor of a name leaves over comes by here.
    const QWidget* const focus = QApplication::focusWidget();
    if (focus != views->current() && views->current()->isAncestorOf(focus))
        return false;
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = held == Qt::NoModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if ((isPlain || held == Qt::ControlModifier) &&
            views->selection()->currentIndex().isValid()) {
            open(views->selection()->currentIndex());
            return true;
        }
        return false;
    case Qt::Key_Backspace:
        if (isPlain)
            q->up();
        return isPlain;
    case Qt::Key_Escape:
        return isPlain && escape();
    default:
        break;
    }
    if (event.matches(QKeySequence::Copy)) {
        copyPaths();
        return true;
    }
    if (event.matches(QKeySequence::Paste))
        return path->paste();
    const QString text = event.text();
    if (text.isEmpty() || !text.front().isPrint() || (held & ~Qt::ShiftModifier) != 0)
        return false;
    if (text == QLatin1String("/") || text == QLatin1String("~")) {
        path->startEditing(text);
        return true;
    }
    return typeAhead(text);
}

bool FileBrowserPrivate::typeAhead(const QString& text) {
    // A blank alone selects, as everywhere.
    if (text == QLatin1String(" ") && !ahead.isActive(now()))
        return false;
    const auto listing = model->listing();
    const QModelIndex current = views->selection()->currentIndex();
    const int row = ahead.find(
        text, current.row(), model->rowCount(),
        [&](int each) { return listing->item(model->itemOf(each)).name; }, now());
    if (row < 0)
        return true;
    const QModelIndex index = model->index(row, FileListModel::Name);
    views->current()->setCurrentIndex(index);
    return true;
}

// One step back; false where none is left.
bool FileBrowserPrivate::escape() {
    if (ahead.isActive(now())) {
        ahead.forget();
        return true;
    }
    if (!filter->text().isEmpty()) {
        filter->clear();
        model->setSearchText({});
        return true;
    }
    if (model->gatherer()->isGathering() && line->isBusy()) {
        q->stop();
        return true;
    }
    return false;
}

void FileBrowserPrivate::goToRows() {
    area->setFocus(Qt::OtherFocusReason);
    if (model->rowCount() > 0 && !views->selection()->hasSelection())
        views->current()->setCurrentIndex(model->index(0, FileListModel::Name));
}

void FileBrowserPrivate::open(const QModelIndex& index) {
    const auto listing = model->listing();
    const int item = model->itemOf(index.row());
    const FileListing::Kind kind = listing->item(item).kind;
    if (kind == FileListing::Kind::Directory) {
        go(listing->path(item));
        return;
    }
    if (FavoritesModel* const places = favorites->favoritesModel())
        places->noteUsed(listing->directory());
    Q_EMIT q->activated(listing->fileInfo(item));
}

bool FileBrowserPrivate::dragOver(QEvent& event) {
    auto& drag = static_cast<QDragMoveEvent&>(event);
    // Its own rows lie here already.
    const auto* const from = qobject_cast<QWidget*>(drag.source());
    if (!drag.mimeData()->hasUrls() || (from && q->isAncestorOf(from))) {
        drag.ignore();
        return true;
    }
    drag.setDropAction(Qt::CopyAction);
    drag.accept();
    return true;
}

void FileBrowserPrivate::copyPaths() const {
    QModelIndexList indexes;
    QStringList texts;
    for (const auto& [first, last] : views->selectedRows()) {
        for (int row = first; row <= last; ++row) {
            indexes << model->index(row, FileListModel::Name);
            texts << decodedName(model->listing()->path(model->itemOf(row)));
        }
    }
    QMimeData* const data = model->mimeData(indexes);
    if (!data)
        return;
    data->setText(texts.join(QLatin1Char('\n')));
    QGuiApplication::clipboard()->setMimeData(data);
}

void FileBrowserPrivate::addFavoriteTo(QMenu& menu) {
    const FavoritesFile* const file = favoritesFile();
    const auto rows = views->selectedRows();
    if (!file || views->selectedCount() != 1)
        return;
    const int item = model->itemOf(rows.front().first);
    const QByteArray place = model->listing()->path(item);
    if (model->listing()->item(item).kind != FileListing::Kind::Directory || file->contains(place))
        return;
    QObject::connect(menu.addAction(FileBrowser::tr("Add to Favourites")), &QAction::triggered, q,
                     [this, place] { toggleFavorite(place); });
}

void FileBrowserPrivate::showMenu(const QPoint& at) {
    auto* const menu = new QMenu(q);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QModelIndex current = views->selection()->currentIndex();
    if (views->selection()->hasSelection()) {
        const QPersistentModelIndex opened = current;
        QAction* const open = menu->addAction(FileBrowser::tr("Open"));
        QObject::connect(open, &QAction::triggered, q, [this, opened] {
            if (opened.isValid())
                this->open(opened);
        });
        QObject::connect(menu->addAction(FileBrowser::tr("Copy Path")), &QAction::triggered, q,
                         [this] { copyPaths(); });
        menu->addAction(actions.rename);
        addFavoriteTo(*menu);
        menu->addSeparator();
    }
    menu->addAction(actions.newFolder);
    menu->addAction(actions.refresh);
    menu->addMenu(viewButton->menu())->setText(FileBrowser::tr("View"));
    const QPointer<QMenu> alive(menu);
    if (menuHook) {
        const auto hook = menuHook; // it may set another one
        hook(*menu, q->selection());
    }
    if (alive)
        menu->popup(views->current()->viewport()->mapToGlobal(at));
}

// What is selected stays so: a sequence as its first frame, a frame as its sequence.
void FileBrowserPrivate::setFolds(bool folds) {
    BrowserPlace wish = views->place();
    const auto listing = model->listing();
    const auto firstFile = [&](QByteArray& name) {
        const int item = listing->find(viewOf(name));
        if (item < 0 || listing->item(item).kind != FileListing::Kind::Sequence)
            return;
        name = listing->framePath(item, listing->item(item).first);
        name = name.mid(name.lastIndexOf('/') + 1);
    };
    for (QByteArray& name : wish.selected)
        firstFile(name);
    firstFile(wish.current);
    firstFile(wish.top);
    state.setWish(std::move(wish));
    model->gatherer()->setFoldsSequences(folds);
}

} // namespace Kestrel::UI
