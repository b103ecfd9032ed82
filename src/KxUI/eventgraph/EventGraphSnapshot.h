#pragma once

#include <KxUI/eventgraph/EventTrackSnapshot.h>

#include <vector>

namespace Kestrel::UI {

/** What a capture held at one moment; a value, see EventTrackSnapshot. Its layout is frozen. */
struct EventGraphSnapshot {
    int startTime = 0;                      ///< EventGraphView::startTime()
    int endTime = 0;                        ///< EventGraphView::endTime()
    std::vector<EventTrackSnapshot> tracks; ///< those that have rows, from top to bottom
};

} // namespace Kestrel::UI
