#pragma once

#include "panels/CurveEdits.h"

#include <QColor>
#include <QMetaType>
#include <QWidget>

#include <optional>
#include <vector>

Q_DECLARE_METATYPE(Kestrel::UI::Curve)

namespace Kestrel::Workbench {

/** Shows and edits one curve on the unit square.

    Mouse: a press on a knot selects and drags it; one elsewhere in the plot adds a knot, which near
    the line starts on it and so keeps the curve's shape. A knot stays between its neighbours and in
    the square; one that is no end of the curve is deleted by dragging it out of the view. A double
    click puts a knot back on the identity line. The right button opens a menu.

    Keys: Tab and Backtab select the next and the previous knot, then leave the view; the arrows
    move the selected knot by a hundredth, with Shift by a tenth; Home puts it back on the identity
    line; Delete and Backspace delete it; Insert adds one behind it; Escape takes a drag back.

    An edit is what happens from `editStarted` up to `editFinished`: one step to undo, or none. */
class CurveView : public QWidget {
    Q_OBJECT

public:
    /** A curve that is drawn faintly behind the one that is edited. */
    struct Backdrop {
        UI::Curve curve;
        QColor color;
    };

    explicit CurveView(QWidget* parent = nullptr);
    ~CurveView() override;

    /** Shows another curve without a signal; its knots tell which is selected. One that equals the
        present curve changes nothing, also not the selection. Any other ends a drag. */
    void setCurve(const UI::Curve& curve);
    const UI::Curve& curve() const { return m_curve; }

    /** The line's colour; that of text where it is not valid, as at first. */
    void setColor(const QColor& color);
    QColor color() const { return m_color; }

    void setBackdrop(std::vector<Backdrop> curves);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    bool isEditing() const { return m_editing; }

public slots:
    /** Takes the edit back that goes on, as Escape does. */
    void cancelEdit();

signals:
    /** The user begins to change the curve; not yet by the press. */
    void editStarted();

    /** The user changed the curve; at every movement of a drag that does so.
        @param what  what a list of edits may say about it */
    void curveEdited(const Kestrel::UI::Curve& curve, const QString& what);

    /** The edit is over: the release of the mouse or the key, or at once for a command. Not
        accepted: the curve is what it was before, and `curveEdited` said so. */
    void editFinished(bool accepted);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Line {
        QPolygonF points;
        QColor color;
    };

    void showCurve(const UI::Curve& curve);
    void select(int index);
    void hover(int index);
    bool edit(const UI::Curve& curve, const QString& what);
    void editOnce(const UI::Curve& curve, const QString& what);
    int addAt(const QPointF& point);
    void deleteSelected();
    void insertBehindSelected();
    void resetKnot(int index);
    void startDrag(int index, const QPointF& position, const QString& what);
    void finishDrag();
    void finishEdit();
    bool isOwnKey(const QKeyEvent& event) const;
    void rebuildBackdrop();
    QColor lineColor() const;
    QString readout() const;
    void paintGrid(QPainter& painter) const;
    void paintKnots(QPainter& painter) const;
    void paintReadout(QPainter& painter) const;

    UI::Curve m_curve;
    std::vector<Backdrop> m_backdrop;
    QColor m_color;
    CurveViewGeometry m_geometry;
    QPolygonF m_line;
    std::vector<Line> m_backdropLines;
    std::optional<CurveDrag> m_drag;
    UI::Curve m_beforeEdit;
    QString m_editText;
    int m_heldKey = 0; ///< which nudges a knot
    QString m_notice;
    int m_hovered = -1;
    bool m_editing = false;
    bool m_addedByPress = false;
};

} // namespace Kestrel::Workbench
