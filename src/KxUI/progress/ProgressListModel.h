#pragma once

#include <KxUI/Export.h>

#include <QAbstractTableModel>

#include <memory>

namespace Kestrel::UI {

class ProgressManager;

/** The tasks of a manager as rows. Interface thread. */
class KXUI_EXPORT ProgressListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /** The columns. */
    enum Column {
        Title,      ///< What is done.
        Progress,   ///< How much: "42 %".
        Left,       ///< How long it will still take.
        State,      ///< What it is about.
        ColumnCount ///< How many there are.
    };
    Q_ENUM(Column)

    /** What every column of a row tells beside Qt's roles. */
    enum Role {
        FractionRole = Qt::UserRole, ///< double: 0 to 1, below 0 where nobody knows
        SecondsRole,                 ///< int: seconds left, -1 where nobody knows
        DetailRole,                  ///< QString: what is done just now
        ErrorRole,                   ///< QString
        StateRole,                   ///< int: ProgressTask::State
        AbilitiesRole                ///< int: ProgressTask::Ability values
    };

    /** Without rows; `parent` owns it when it is given. */
    explicit ProgressListModel(QObject* parent = nullptr);
    ~ProgressListModel() override;

    /** Whose tasks they are; null when it is gone. Borrowed. */
    ProgressManager* manager() const;
    void setManager(ProgressManager* manager);

    /** Reimplemented from Qt. */
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
