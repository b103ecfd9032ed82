#pragma once

#include <KxUI/dock/DockDropZone.h>

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

class QTabBar;

namespace Kestrel::UI {

/** The zone of a point, given the stack's rectangle (both in the same coordinates) and the size of
    the whole pane, which sets how deep the edge zones reach. */
DockDropZone dropZoneAt(const QPoint& point, const QRect& stack, const QSize& pane);

/** The part of `area` that a drop on `zone` would take, for the indicator. */
QRect dropZoneArea(const QRect& area, DockDropZone zone);

/** Where the tabs of a strip are. */
QVector<QRect> tabRects(const QTabBar& strip);

/** The index at which a tab dropped at `point` goes: that of the tab there, one more right of its
    centre, -1 (at the end) where no tab is. */
int dropIndexAt(const QPoint& point, const QVector<QRect>& tabs);

} // namespace Kestrel::UI
