#include <KxUI/undo/MultiStackUndoView.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/undo/MultiStackUndoModel.h>

namespace Kestrel::UI {

/** The data of a MultiStackUndoView. */
class MultiStackUndoViewPrivate {
public:
    explicit MultiStackUndoViewPrivate(MultiStackUndoView* view)
        : model(new MultiStackUndoModel(view)) {}

    MultiStackUndoModel* model;
    bool currentIsNew = false;
    bool scrollToCurrent = false;
};

MultiStackUndoView::MultiStackUndoView(QWidget* parent)
    : QListView(parent)
    , d(std::make_unique<MultiStackUndoViewPrivate>(this)) {
    setUniformItemSizes(true);
    setModel(d->model);
    const QItemSelectionModel* replaced = selectionModel();
    setSelectionModel(d->model->selectionModel());
    delete replaced;
}

MultiStackUndoView::~MultiStackUndoView() = default;

void MultiStackUndoView::setGroup(MultiStackUndoGroup* group) {
    KXUI_INTERFACE_THREAD(this);
    d->model->setGroup(group);
}

// Each step of a jump resets the list. To lay all of it out as often would take longer than the
// commands do, so what needs to know where the current row is waits for the next layout.
void MultiStackUndoView::currentChanged(const QModelIndex&, const QModelIndex&) {
    d->currentIsNew = true;
    d->scrollToCurrent = hasAutoScroll(); // switched off by the base class while a row is pressed
    scheduleDelayedItemsLayout();
}

void MultiStackUndoView::doItemsLayout() {
    QListView::doItemsLayout();
    if (!d->currentIsNew)
        return;
    d->currentIsNew = false;
    const bool autoScroll = hasAutoScroll();
    setAutoScroll(autoScroll && d->scrollToCurrent);
    QListView::currentChanged(currentIndex(), QModelIndex());
    setAutoScroll(autoScroll);
}

// Asked for at every step, too, to paint it anew: all of a list is painted as fast as two rows.
QRegion MultiStackUndoView::visualRegionForSelection(const QItemSelection&) const {
    return viewport()->rect();
}

// There always is a current state, so there always is a selected row: a click beside the rows, or
// with Control on the selected one, takes nothing away.
QItemSelectionModel::SelectionFlags MultiStackUndoView::selectionCommand(const QModelIndex& index,
                                                                         const QEvent*) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

} // namespace Kestrel::UI
