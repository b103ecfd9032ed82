#include <KxUI/progress/ProgressListModel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/ProgressText.h>

#include <QPointer>

namespace Kestrel::UI {

struct ProgressListModel::Private {
    QVariant text(int row, const ProgressTask& task, int column) const;
    QVariant role(int row, const ProgressTask& task, int role) const;

    QPointer<ProgressManager> manager;
    int rows = 0; ///< that views know of
};

QVariant ProgressListModel::Private::text(int row, const ProgressTask& task, int column) const {
    switch (column) {
    case Title:
        return task.title();
    case Progress: {
        const double fraction = manager->shownFraction(row);
        return fraction < 0 ? QString() : tr("%1 %").arg(static_cast<int>(fraction * 100));
    }
    case Left:
        return task.isEnded() ? QString() : manager->statusText(row);
    default:
        return ProgressText::state(task.state());
    }
}

QVariant ProgressListModel::Private::role(int row, const ProgressTask& task, int role) const {
    switch (role) {
    case Qt::ToolTipRole:
        return task.state() == ProgressTask::State::Failed ? manager->statusText(row)
                                                           : task.detail();
    case FractionRole:
        return manager->shownFraction(row);
    case SecondsRole: {
        const auto left = manager->timeToGo(row);
        return left ? static_cast<int>(left->count()) : -1;
    }
    case DetailRole:
        return task.detail();
    case ErrorRole:
        return task.error();
    case StateRole:
        return static_cast<int>(task.state());
    case AbilitiesRole:
        return static_cast<int>(task.abilities());
    default:
        return {};
    }
}

ProgressListModel::ProgressListModel(QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>()) {}

ProgressListModel::~ProgressListModel() {
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
}

ProgressManager* ProgressListModel::manager() const {
    return d->manager;
}

void ProgressListModel::setManager(ProgressManager* manager) {
    KXUI_INTERFACE_THREAD(this);
    if (manager == d->manager)
        return;
    beginResetModel();
    if (d->manager)
        disconnect(d->manager, nullptr, this, nullptr);
    d->manager = manager;
    if (manager) {
        connect(manager, &ProgressManager::taskAdded, this, [this](int row) {
            beginInsertRows(QModelIndex(), row, row);
            ++d->rows;
            endInsertRows();
        });
        connect(manager, &ProgressManager::taskChanged, this, [this](int first, int last) {
            Q_EMIT dataChanged(index(first, 0), index(last, ColumnCount - 1));
        });
        connect(manager, &ProgressManager::taskAboutToBeRemoved, this,
                [this](int row) { beginRemoveRows(QModelIndex(), row, row); });
        connect(manager, &ProgressManager::taskRemoved, this, [this] {
            --d->rows;
            endRemoveRows();
        });
        connect(manager, &QObject::destroyed, this, [this] {
            beginResetModel();
            d->rows = 0;
            endResetModel();
        });
    }
    d->rows = manager ? manager->count() : 0;
    endResetModel();
}

int ProgressListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : d->rows;
}

int ProgressListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant ProgressListModel::data(const QModelIndex& index, int role) const {
    const auto task = index.isValid() && d->manager ? d->manager->task(index.row()) : nullptr;
    if (!task)
        return {};
    return role == Qt::DisplayRole ? d->text(index.row(), *task, index.column())
                                   : d->role(index.row(), *task, role);
}

QVariant ProgressListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Title:
        return tr("Task");
    case Progress:
        return tr("Progress");
    case Left:
        return tr("Left");
    default:
        return tr("State");
    }
}

} // namespace Kestrel::UI
