#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

#include <QPointer>

#include <vector>

namespace Kestrel::UI {

class SwatchGrid;

/** A grid of swatches as assistive technology sees it: a list of colours. */
class SwatchGridAccessible : public QAccessibleWidget {
public:
    explicit SwatchGridAccessible(SwatchGrid* grid);
    ~SwatchGridAccessible() override;

    /** There are others, or they lie elsewhere; and the keyboard is at another one. */
    static void tellReordered(SwatchGrid* grid);
    static void tellFocus(SwatchGrid* grid, int row);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text kind) const override;

private:
    SwatchGrid* grid() const;

    mutable std::vector<QAccessible::Id> m_children;
};

/** One of the colours. */
class SwatchCellAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    SwatchCellAccessible(SwatchGrid* grid, int row);

    int row() const { return m_row; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    /** Its name, or the colour in words where it has none, which are its value, too. */
    QString text(QAccessible::Text kind) const override;
    /** Names it. */
    void setText(QAccessible::Text kind, const QString& text) override;
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QModelIndex index() const;

    const QPointer<SwatchGrid> m_grid;
    const int m_row;
};

} // namespace Kestrel::UI
