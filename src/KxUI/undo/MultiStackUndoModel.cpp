#include <KxUI/undo/MultiStackUndoModel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/undo/MultiStackUndoGroup.h>

#include <QMetaMethod>
#include <QPointer>
#include <QUndoCommand>

namespace Kestrel::UI {
namespace {

// Making a row current resets the model, and the selection model then frees the indexes that its
// currentChanged() is still handing around. So the model's slot has to be the last one, after those
// of all views: whenever somebody connects, it is connected anew.
class UndoSelectionModel : public QItemSelectionModel {
public:
    explicit UndoSelectionModel(MultiStackUndoModel* model)
        : QItemSelectionModel(model)
        , m_model(model) {
        connectModel();
    }

protected:
    void connectNotify(const QMetaMethod& signal) override {
        if (!m_connecting &&
            signal == QMetaMethod::fromSignal(&QItemSelectionModel::currentChanged))
            connectModel();
    }

private:
    void connectModel() {
        m_connecting = true;
        disconnect(m_connection);
        m_connection = connect(this, &QItemSelectionModel::currentChanged, m_model,
                               &MultiStackUndoModel::setCurrentIndex);
        m_connecting = false;
    }

    MultiStackUndoModel* m_model;
    QMetaObject::Connection m_connection;
    bool m_connecting = false;
};

} // namespace

/** The data of a MultiStackUndoModel. */
class MultiStackUndoModelPrivate {
public:
    explicit MultiStackUndoModelPrivate(MultiStackUndoModel* model)
        : selectionModel(new UndoSelectionModel(model)) {}

    QPointer<MultiStackUndoGroup> group;
    QItemSelectionModel* selectionModel;
};

MultiStackUndoModel::MultiStackUndoModel(QObject* parent)
    : QAbstractItemModel(parent)
    , d(std::make_unique<MultiStackUndoModelPrivate>(this)) {}

MultiStackUndoModel::~MultiStackUndoModel() = default;

void MultiStackUndoModel::setGroup(MultiStackUndoGroup* group) {
    KXUI_INTERFACE_THREAD(this);
    using Group = MultiStackUndoGroup;
    using Model = MultiStackUndoModel;
    if (d->group)
        disconnect(d->group, nullptr, this, nullptr);
    beginResetModel();
    d->group = group;
    if (group) {
        connect(group, &Group::projectAboutToBeAdded, this, &Model::groupAboutToBeChanged);
        connect(group, &Group::projectAboutToBeChanged, this, &Model::groupAboutToBeChanged);
        connect(group, &Group::projectAboutToBeRemoved, this, &Model::groupAboutToBeChanged);
        connect(group, &Group::projectAdded, this, &Model::groupChanged);
        connect(group, &Group::projectChanged, this, &Model::groupChanged);
        connect(group, &Group::projectRemoved, this, &Model::groupChanged);
        connect(group, &QObject::destroyed, this, [this] {
            beginResetModel();
            endResetModel();
        });
    }
    endResetModel();
    selectRowOfGroup();
}

MultiStackUndoGroup* MultiStackUndoModel::group() const {
    return d->group;
}

QItemSelectionModel* MultiStackUndoModel::selectionModel() const {
    return d->selectionModel;
}

QModelIndex MultiStackUndoModel::index(int row, int column, const QModelIndex& parent) const {
    if (!d->group || parent.isValid())
        return {};
    return createIndex(row, column, static_cast<quintptr>(row));
}

QModelIndex MultiStackUndoModel::parent(const QModelIndex&) const {
    return {};
}

int MultiStackUndoModel::rowCount(const QModelIndex& parent) const {
    return d->group && !parent.isValid() ? static_cast<int>(d->group->undoCommands().size()) + 1
                                         : 0;
}

int MultiStackUndoModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant MultiStackUndoModel::data(const QModelIndex& index, int role) const {
    const int row = rowOf(index);
    if (row < 0 || role != Qt::DisplayRole)
        return {};
    return row == 0 ? tr("<empty>") : d->group->undoCommands().at(row - 1)->command->text();
}

void MultiStackUndoModel::setCurrentIndex(const QModelIndex& index) {
    KXUI_INTERFACE_THREAD(this);
    const int row = rowOf(index);
    if (row >= 0)
        d->group->makeIndex(row);
}

void MultiStackUndoModel::groupAboutToBeChanged() {
    beginResetModel();
}

void MultiStackUndoModel::groupChanged() {
    endResetModel();
    selectRowOfGroup();
}

// The row that an index stands for, or -1.
int MultiStackUndoModel::rowOf(const QModelIndex& index) const {
    if (!d->group || !index.isValid() || index.column() != 0 ||
        index.internalId() >= static_cast<quintptr>(rowCount()))
        return -1;
    return static_cast<int>(index.internalId());
}

void MultiStackUndoModel::selectRowOfGroup() {
    if (d->group)
        d->selectionModel->setCurrentIndex(index(d->group->index(), 0),
                                           QItemSelectionModel::ClearAndSelect);
}

} // namespace Kestrel::UI
