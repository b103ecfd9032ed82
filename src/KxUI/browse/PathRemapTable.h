#pragma once

#include <KxUI/Export.h>
#include <KxUI/files/PathRemap.h>

#include <QWidget>

#include <memory>
#include <vector>

class QSettings;
class QTableView;
class QUndoStack;

namespace Kestrel::UI {

class PathRemapModel;

/** The rules of a PathRemap as a table to edit, with a line to try them by.

    Keys of the table: Return and F2 edit a cell, Tab goes on from the source to the destination and
    to the next rule; Delete removes the selected rules, Alt+Up and Alt+Down move them; Ctrl+Z undoes;
    Ctrl+C copies rules as lines of two columns, Ctrl+V adds such lines. Folders dropped on a
    destination become it. Interface thread. */
class KXUI_EXPORT PathRemapTable : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString tryPath READ tryPath WRITE setTryPath NOTIFY tryPathChanged)

public:
    /** Without rules. */
    explicit PathRemapTable(QWidget* parent = nullptr);
    ~PathRemapTable() override;

    /** The rules; the table owns it. */
    PathRemapModel* model() const;
    /** The view of it; the table owns it. */
    QTableView* view() const;

    /** The rules of the model. */
    std::vector<Kestrel::UI::PathRule> rules() const;
    void setRules(const std::vector<Kestrel::UI::PathRule>& rules);

    /** The history that edits are steps of; at first one of the table's own. Borrowed; null goes
        back to its own. */
    QUndoStack* undoStack() const;
    void setUndoStack(QUndoStack* stack);

    /** The path in the line below. */
    QString tryPath() const;

    /** Rules that store() has kept, in a group `PathRemap` of a host's settings. */
    static std::vector<Kestrel::UI::PathRule> load(QSettings& settings);
    /** Keeps rules where load() finds them. */
    static void store(QSettings& settings, const std::vector<Kestrel::UI::PathRule>& rules);

public Q_SLOTS:
    /** Shows a path in the line below, and what becomes of it. */
    void setTryPath(const QString& path);

    /** Adds the rules of a file that are not there yet, by one edit; returns at once, and
        fileFinished() tells. The format is that of PathRemapModel::fromJson(). */
    void importFile(const QString& fileName);
    /** Writes the rules; returns at once, and fileFinished() tells. */
    void exportFile(const QString& fileName);

    /** Begins to type a new rule. */
    void addRule();
    /** Removes the selected rules. */
    void removeSelected();
    /** Moves the selected rules one row towards the first. */
    void moveSelectedUp();
    /** Moves the selected rules one row towards the last. */
    void moveSelectedDown();

Q_SIGNALS:
    /** An import or export is over; `error` is a sentence, empty when all went well. */
    void fileFinished(const QString& error);
    /** tryPath() is another. */
    void tryPathChanged(const QString& path);
    /** The user begins an edit. */
    void editStarted();
    /** The user has changed the rules. */
    void valueEdited(const std::vector<Kestrel::UI::PathRule>& rules);
    /** The edit is over. */
    void editFinished(bool accepted);

protected:
    bool event(QEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(std::vector<Kestrel::UI::PathRule>)
