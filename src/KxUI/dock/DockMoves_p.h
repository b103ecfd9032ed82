#pragma once

#include <KxUI/dock/DockDropZone.h>

#include <QPointer>
#include <QRect>
#include <QVector>

class QWidget;

namespace Kestrel::UI {

class Dock;
class DockMainWindow;
class DockWindow;

/** \file
    How pages go from pane to pane, whoever asks for it: the pane, its menu, or a drag. */

/** Puts pages into one pane of a new floating window, each made current in turn. `place` is where
    the frame's corner goes, and the size; an empty one leaves both to the window. Null, and nothing
    moved, when the host makes no window or no pane. */
DockWindow* floatPages(DockMainWindow& workspace, const QVector<QPointer<QWidget>>& pages,
                       const QRect& place);

/** Puts `page` into `target` at `index`, or into a new pane on the side of `target` that `zone`
    names, and makes it current; an emptied floating window that it leaves closes. False, and
    nothing moved, when `target` cannot be split. */
bool dockPage(QWidget* page, Dock* target, DockDropZone zone, int index);

/** The pane that has `page` among its pages, null for none. */
Dock* paneOf(const QWidget* page);

} // namespace Kestrel::UI
