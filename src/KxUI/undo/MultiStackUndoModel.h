#pragma once

#include <KxUI/Export.h>

#include <QAbstractItemModel>
#include <QItemSelectionModel>

#include <memory>

namespace Kestrel::UI {

class MultiStackUndoGroup;
class MultiStackUndoModelPrivate;

/** The history of a MultiStackUndoGroup as a list of one column: row 0 stands for "nothing done",
    row n for the n-th entry. The current row of its selection model is the group's index: it
    follows the group, and making another row current takes the group there.
    Every change of the group, and so every step of a jump, resets the model.
    Interface thread. */
class KXUI_EXPORT MultiStackUndoModel : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit MultiStackUndoModel(QObject* parent = nullptr);
    ~MultiStackUndoModel() override;

    /** Shows another group; null, or a group that was deleted, makes a model without rows. The
        group stays the host's. */
    void setGroup(MultiStackUndoGroup* group);
    /** The group that is shown; null for none. */
    MultiStackUndoGroup* group() const;

    /** The selection model for the views on this model, owned by it. */
    QItemSelectionModel* selectionModel() const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    using QObject::parent;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

public Q_SLOTS:
    /** Takes the group to the row of `index`. */
    void setCurrentIndex(const QModelIndex& index);

    /** What the group's announcements are connected to: the model begins a reset, and ends it and
        selects the row of the current state. Call them in pairs. */
    void groupAboutToBeChanged();
    void groupChanged();

private:
    int rowOf(const QModelIndex& index) const;
    void selectRowOfGroup();

    const std::unique_ptr<MultiStackUndoModelPrivate> d;
};

} // namespace Kestrel::UI
