#include <KxUI/undo/MultiStackUndoView.h>

#include <KxUI/undo/MultiStackUndoModel.h>

namespace Kestrel::UI {

MultiStackUndoView::MultiStackUndoView(QWidget* parent)
    : QListView(parent)
    , m_model(new MultiStackUndoModel(this)) {
    setUniformItemSizes(true);
    setModel(m_model);
    const QItemSelectionModel* replaced = selectionModel();
    setSelectionModel(m_model->selectionModel());
    delete replaced;
}

void MultiStackUndoView::setGroup(MultiStackUndoGroup* group) {
    m_model->setGroup(group);
}

// Each step of a jump resets the list. To lay all of it out as often would take longer than the
// commands do, so what needs to know where the current row is waits for the next layout.
void MultiStackUndoView::currentChanged(const QModelIndex&, const QModelIndex&) {
    m_currentIsNew = true;
    m_scrollToCurrent = hasAutoScroll(); // switched off by the base class while a row is pressed
    scheduleDelayedItemsLayout();
}

void MultiStackUndoView::doItemsLayout() {
    QListView::doItemsLayout();
    if (!m_currentIsNew)
        return;
    m_currentIsNew = false;
    const bool autoScroll = hasAutoScroll();
    setAutoScroll(autoScroll && m_scrollToCurrent);
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
