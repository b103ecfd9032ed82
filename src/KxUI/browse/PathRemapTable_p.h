#pragma once

#include <KxUI/browse/PathRemapModel.h>
#include <KxUI/browse/PathRemapTable.h>
#include <KxUI/kit/Mailbox_p.h>

#include <QStyledItemDelegate>
#include <QTableView>
#include <QUndoStack>

class QLabel;
class QLineEdit;
class QToolButton;
class QHBoxLayout;

namespace Kestrel::UI {

/** Cells of rules: what is wrong with one, how its source is written, which one is used. */
class PathRuleDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit PathRuleDelegate(QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

/** The rows, with the keys of PathRemapTable. */
class PathRuleView final : public QTableView {
    Q_OBJECT

public:
    explicit PathRuleView(PathRemapTable* table);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    bool isOwnKey(const QKeyEvent& event) const;
    bool press(const QKeyEvent& event);
    void copy() const;
    void paste();

    PathRemapTable* const m_table;
};

struct PathRemapTable::Private {
    /** What has become of a file. */
    struct FileNews {
        QByteArray bytes;
        QString error; ///< what the system says
        bool isImport = false;
    };

    explicit Private(PathRemapTable* table);

    void makeView();
    QHBoxLayout* makeButtons();
    QHBoxLayout* makeTryLine();
    QToolButton* addButton(QHBoxLayout& row, const QString& text, const QString& tip);
    void askForFile(bool isImport);
    void showTried();
    void showSelection();
    void take(const FileNews& news);
    std::vector<int> selectedRows() const;
    void moveSelected(int rows);

    PathRemapTable* const q;
    PathRemapModel* model = nullptr;
    QUndoStack* ownStack = nullptr;
    PathRuleView* view = nullptr;
    QToolButton* removeButton = nullptr;
    QToolButton* upButton = nullptr;
    QToolButton* downButton = nullptr;
    QLineEdit* tryLine = nullptr;
    QLabel* tried = nullptr;
    QLabel* message = nullptr;
    const std::shared_ptr<Mailbox<FileNews>> box;
};

} // namespace Kestrel::UI
