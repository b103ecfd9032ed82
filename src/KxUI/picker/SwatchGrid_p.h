#pragma once

#include <KxUI/kit/WheelNotches_p.h>
#include <KxUI/picker/DisplayCall_p.h>
#include <KxUI/picker/SwatchGrid.h>
#include <KxUI/picker/SwatchGridGeometry_p.h>

#include <QPersistentModelIndex>

#include <optional>
#include <vector>

class QMenu;
class QMimeData;
class QPainter;

namespace Kestrel::UI {

/** The state of a SwatchGrid. Functions that change the model may delete the grid. */
class SwatchGridPrivate {
public:
    explicit SwatchGridPrivate(SwatchGrid* grid)
        : q(grid) {}

    int count() const;
    QModelIndex index(int row) const;
    SwatchGridGeometry geometry() const;
    /** From the viewport to the geometry's contents. */
    QPoint toContents(const QPoint& place) const;
    QPoint toViewport(const QPoint& place) const;

    void follow(QAbstractItemModel* model);
    /** The model has others, or shows them otherwise. */
    void forget();

    /** What the screen shows of each. */
    const std::vector<QColor>& colors();
    void paint(QPainter& painter, const QRect& exposed);
    void hover(int row);

    bool canChange() const;
    bool canTake(const QMimeData* data) const;
    void choose(const QModelIndex& index);
    /** Adds a colour before that row. */
    bool add(int row, const ColorValue& color, const QString& name);
    /** Moves a colour to before that row. */
    void move(int from, int before);
    /** What Alt with an arrow does. */
    void moveBy(QAbstractItemView::CursorAction action);
    QModelIndex step(QAbstractItemView::CursorAction action) const;
    void startDrag();
    void setGap(int gap);
    void takeDrop(const QMimeData* data);
    bool pressKey(const QKeyEvent& event);
    bool isOwnKey(const QKeyEvent& event) const;
    void fillMenu(QMenu& menu);
    void askToClear();

    int cell = 20;
    DisplayCall display;
    bool readOnly = false;
    WheelNotches notches;
    std::optional<QPoint> pressed; ///< where a drag may come of
    QPersistentModelIndex dragged; ///< what is dragged, also while the model changes

private:
    void paintCell(QPainter& painter, int row, double ratio);

    SwatchGrid* const q;
    std::vector<QMetaObject::Connection> m_connections;
    std::vector<QColor> m_colors;
    bool m_knowsColors = false;
    int m_hovered = -1;
    int m_gap = -1; ///< where a drop would go
};

} // namespace Kestrel::UI
