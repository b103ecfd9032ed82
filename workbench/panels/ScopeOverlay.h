#pragma once

#include "scopes/RegionDrag.h"
#include "scopes/SelectionMask.h"

#include <KxUI/scopes/ScopeModel.h>

#include <QWidget>

namespace Kestrel::Workbench {

class ScopeFeed;
class ViewerCanvas;

/** What scopes have to do with the picture of a viewer, laid over it while one of them is seen: the
    region that they count, the pixels that were selected in one, and a pixel that one asked for.

    Mouse: a drag draws a region; one that is there is moved by its inside and resized by its edges and
    corners. A double click takes it away, Escape or the right button takes a drag back. The rest goes
    to the viewer.

    Keys, with the focus, which the Tab key gives and a click does not: the arrows move the region, ten
    pixels with Shift, and with Ctrl they move its right and lower edge; without a region they and
    Return begin one in the middle. Delete takes it away; Escape takes back a held key, or else the mark
    of a pixel, or else gives the focus away. */
class ScopeOverlay : public QWidget {
    Q_OBJECT

public:
    /** @param feed  borrowed; outlives the overlay
        @param canvas  owns it */
    ScopeOverlay(ScopeFeed* feed, ViewerCanvas* canvas);

    /** The region, in pixels of the full frame; null for all of it. */
    QRect region() const;

    bool isEditing() const { return m_isEditing; }
    /** Takes an edit back. */
    void cancelEdit();

signals:
    /** The user begins to change the region. Always followed by one editFinished(). */
    void editStarted();
    /** The model has it already. */
    void regionEdited(const QRect& region);
    /** The edit is over. Not accepted: it was taken back, and regionEdited() said so before. */
    void editFinished(bool accepted);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    PicturePlace place() const;
    bool endDrag();
    void edit(const QRect& region);
    void finish(bool accepted);
    void editAtOnce(const QRect& region);
    void editByKeys();
    void pressArrow(const QKeyEvent& event);
    void escape();
    void followModel(UI::ScopeModel::Changes changes);
    void makeMask();
    void describe();
    void showCursor(const QPointF& position);
    void paintRegion(QPainter& painter, const PicturePlace& place) const;
    void paintMark(QPainter& painter, const PicturePlace& place) const;

    ScopeFeed* m_feed;
    ViewerCanvas* m_canvas;
    SelectionMask m_mask;
    RegionDrag m_drag;
    bool m_isEditing = false;
    bool m_isHovered = false;
    /** What an edit began with. */
    QRect m_before;
};

} // namespace Kestrel::Workbench
