#pragma once

#include <KxUI/Export.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QAbstractItemView>

#include <memory>

namespace Kestrel::UI {

class SwatchGridPrivate;

/** Shows the colours of a `SwatchModel`, or of any list that has them as
    `SwatchModel::ColorRole`, as small squares, as many in a row as there is room for.

    Mouse: a click chooses a colour; a drag takes it to another place of the grid, or to whatever
    takes colours. Colours that are dropped are added where the line shows. The wheel with Control
    changes the size of the squares.

    Keys: arrows, Home, End and the Page keys go from one to another, with Alt they move the colour
    itself; Return and Space choose it, F2 names it, Delete removes it, Control with C and V copy
    it and add one; letters find a name. Interface thread. */
class KXUI_EXPORT SwatchGrid : public QAbstractItemView {
    Q_OBJECT
    Q_PROPERTY(int cellSize READ cellSize WRITE setCellSize NOTIFY cellSizeChanged)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)

public:
    static constexpr int SmallestCell = 12; ///< the least side of a cell, in pixels
    static constexpr int LargestCell = 48;  ///< the greatest one

    /** A grid without a model, which is borrowed. */
    explicit SwatchGrid(QWidget* parent = nullptr);
    ~SwatchGrid() override;

    /** How colours are shown, and what those of the screen come back by. None at first: as they
        are. The model's own is for its files. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** The side of a square in pixels, limited to 12-48; 20 at first. */
    int cellSize() const;
    void setCellSize(int pixels);

    /** Whether the user can choose and copy only, not add, move, name and remove. */
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    /** The colour in a row of the model; null where there is none. */
    ColorValue color(int row) const;

    /** Reimplemented from Qt. */
    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    void setModel(QAbstractItemModel* model) override;
    QSize sizeHint() const override;

public Q_SLOTS:
    /** What the keys do to the present one; nothing without one, or if the grid is read-only. */
    void renameCurrent();
    void removeCurrent();
    void copyCurrent();
    /** Adds the colour of the clipboard after the present one, or at the end. */
    void paste();

Q_SIGNALS:
    /** The user chose a colour. */
    void colorChosen(const Kestrel::UI::ColorValue& color);
    /** The squares have another size. */
    void cellSizeChanged(int pixels);
    /** The user may edit, or no longer. */
    void readOnlyChanged(bool readOnly);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;

protected Q_SLOTS:
    void updateGeometries() override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    friend class SwatchGridPrivate;

    const std::unique_ptr<SwatchGridPrivate> d;
};

} // namespace Kestrel::UI
