#pragma once

#include <KxUI/Export.h>

#include <QListView>

#include <memory>

namespace Kestrel::UI {

class MultiStackUndoGroup;
class MultiStackUndoViewPrivate;

/** A list of the history of a MultiStackUndoGroup. The selected row is the current state; clicking
    another, or going there by key, undoes or redoes up to it. Showing or focusing the view changes
    nothing.
    Interface thread. */
class KXUI_EXPORT MultiStackUndoView : public QListView {
    Q_OBJECT

public:
    explicit MultiStackUndoView(QWidget* parent = nullptr);
    ~MultiStackUndoView() override;

    /** Shows another group, or none for null. The group stays the host's. */
    void setGroup(MultiStackUndoGroup* group);

    void doItemsLayout() override;

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    /** Reimplemented from Qt. */
    QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event = nullptr) const override;

private:
    const std::unique_ptr<MultiStackUndoViewPrivate> d;
};

} // namespace Kestrel::UI
