#pragma once

#include <QFrame>

class QAbstractItemModel;
class QListView;

namespace Kestrel::UI {

class SearchField;

/** The list of a combo box with many items, with a field that narrows it. Deletes itself when it is
    closed. */
class PromptPopup : public QFrame {
    Q_OBJECT

public:
    /** The items are those below `root`, shown by what they have in `column`. */
    PromptPopup(QAbstractItemModel* items, const QModelIndex& root, int column, QWidget* parent);

    /** Opens below, or above, its parent, with that row marked; none for -1. */
    void open(int row);

    SearchField* field() const { return m_field; }
    QListView* list() const { return m_list; }

Q_SIGNALS:
    /** The user chose that row of the items; the list is closed already. */
    void chosen(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    void choose(const QModelIndex& shown);
    void step(int rows);
    void search(const QString& text);

    class Rows;
    Rows* m_rows;
    SearchField* m_field;
    QListView* m_list;
};

} // namespace Kestrel::UI
