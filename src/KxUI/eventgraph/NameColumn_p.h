#pragma once

#include <KxUI/eventgraph/EventGraphPainting_p.h>
#include <KxUI/eventgraph/EventGraphScene_p.h>

namespace Kestrel::UI {

/** Paints the name of a row: in the column at the left, with the ends of a graph's axis, or, when
    the view is scrolled so far that the column is out of sight, over the row.
    @param scrolled  x of the view's first visible pixel */
void paintName(QPainter& painter, const SceneRow& row, const ViewColors& colors, int scrolled);

} // namespace Kestrel::UI
