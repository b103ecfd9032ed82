#pragma once

#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>

#include <optional>

/** \file
    A rectangle of pixels that is drawn, moved and resized on a picture, without the widget that it is
    drawn on. */

namespace Kestrel::Workbench {

/** Where a picture lies in a widget. A plain value. */
struct PicturePlace {
    QRectF target; ///< in the widget
    QSize pixels;  ///< of the picture

    bool isEmpty() const { return target.isEmpty() || pixels.isEmpty(); }
    /** A place of the widget in pixels of the picture, also outside of it. */
    QPointF toPicture(const QPointF& position) const;
    QRectF toWidget(const QRect& rect) const;
};

/** The edges of a region, as bits. */
enum RegionEdge { LeftEdge = 1, TopEdge = 2, RightEdge = 4, BottomEdge = 8, AllEdges = 15 };

/** The edges that a press there would take, all of them inside the region; 0 outside, where it would
    begin another one. */
int regionEdgesAt(const PicturePlace& place, const QRect& region, const QPointF& position);

/** The region with some of its edges moved. It stays inside the picture, keeps at least a pixel, and
    turns over where an edge crosses the other one; with all edges it keeps its size. */
QRect movedRegion(const QRect& region, int edges, const QPoint& by, const QSize& picture);

/** A drag with the left button, in places of the widget. */
class RegionDrag {
public:
    /** @param region  null without one */
    void press(const PicturePlace& place, const QRect& region, const QPointF& position);
    /** The region now; nothing while the mouse has hardly moved, and without a press. */
    std::optional<QRect> move(const PicturePlace& place, const QPointF& position);
    /** Whether the drag had begun. */
    bool release();

    bool isPressed() const { return m_isPressed; }
    bool hasBegun() const { return m_hasBegun; }

private:
    bool m_isPressed = false;
    bool m_hasBegun = false;
    int m_edges = 0;
    QPointF m_from;
    QRect m_start;
};

} // namespace Kestrel::Workbench
