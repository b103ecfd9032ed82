#pragma once

#include <KxUI/Export.h>
#include <KxUI/files/PathRemap.h>

#include <QAbstractTableModel>
#include <QString>

#include <memory>
#include <vector>

class QUndoStack;

namespace Kestrel::UI {

/** Rules of a PathRemap as rows to be edited, in their order: the first that matches is used. The
    last row is an empty one to type into; it is no rule until both its paths are there.

    An edit of the user is told by editStarted(), rulesEdited() and editFinished(), and is one step
    of the undo stack if there is one; whatever changes the rules, rulesChanged() is told once.
    Interface thread. */
class KXUI_EXPORT PathRemapModel : public QAbstractTableModel {
    Q_OBJECT
    Q_PROPERTY(QString tryPath READ tryPath WRITE setTryPath NOTIFY tryPathChanged)

public:
    /** The columns. */
    enum Column {
        On,         ///< Whether the rule is used: a check box
        From,       ///< The folder on the other machine
        To,         ///< The same folder here
        Result,     ///< What tryPath() becomes, in the row of the rule that does it
        Status,     ///< What is wrong with the rule, as a sentence.
        ColumnCount ///< How many there are.
    };
    Q_ENUM(Column)

    /** What cells tell beside Qt's roles. */
    enum Role {
        WindowsRole = Qt::UserRole, ///< bool: `from` is written as Windows does
        ProblemRole,                ///< QString: as in Status
        MatchRole,                  ///< bool: the rule that tryPath() is changed by
        NewRowRole                  ///< bool: the empty row
    };

    /** Without rules; `parent` owns it when it is given. */
    explicit PathRemapModel(QObject* parent = nullptr);
    ~PathRemapModel() override;

    /** The rules, also those that have a problem or are not used. */
    std::vector<PathRule> rules() const;
    /** Sets the rules, at most 4,096, as a host does: no edit, no step. */
    void setRules(const std::vector<PathRule>& rules);

    /** What the rules make of paths. */
    PathRemap remap() const;

    /** A path to try the rules by; at first empty. */
    QString tryPath() const;
    void setTryPath(const QString& path);
    /** What becomes of it. */
    QString triedResult() const;
    /** The rule that is used for it; -1 for none. */
    int matchingRule() const;

    /** The history that edits are steps of; null for none, as at first. Borrowed. */
    QUndoStack* undoStack() const;
    void setUndoStack(QUndoStack* stack);

    /** Replaces the rules by an edit of the user.
        @param rules  what they are now
        @param text   what the step is called */
    void editRules(const std::vector<PathRule>& rules, const QString& text);

    /** How a folder is probably written: with a drive or two backslashes as on Windows. */
    static PathStyle guessedStyle(const QString& path);

    /** Rules of a text in the format `pathmapping-1.0` (JSON), the longest source first; 1 MiB and
        4,096 rules at most.
        @param json   the text
        @param error  set to a sentence where it is none, and emptied else; may be null
        @return none where it is no such text */
    static std::vector<PathRule> fromJson(const QByteArray& json, QString* error = nullptr);
    /** The same text of rules.
        @param rules  in their order
        @param error  set to a sentence where a path is no text, and emptied else; may be null
        @return empty where a path is no text */
    static QByteArray toJson(const std::vector<PathRule>& rules, QString* error = nullptr);

    /** Reimplemented from Qt. */
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    QStringList mimeTypes() const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

Q_SIGNALS:
    /** rules() are others. */
    void rulesChanged();
    /** tryPath() is another. */
    void tryPathChanged(const QString& path);
    /** The user begins an edit. */
    void editStarted();
    /** The user has changed the rules. */
    void rulesEdited();
    /** The edit is over. */
    void editFinished(bool accepted);

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
