#pragma once

#include <KxUI/eventgraph/EventGraphPainting_p.h>
#include <KxUI/eventgraph/EventSearch_p.h>

namespace Kestrel::UI {

/** All that a view is painted from. Times are milliseconds since the start of the capture. */
struct ViewPainting {
    const Scene& scene;
    const ViewColors& colors;
    TimeScale scale;
    QSize size;       ///< of the view
    QRect visible;    ///< what is painted of it
    int scrolled = 0; ///< x of its first pixel on the screen
    int span = 0;     ///< of the capture
    int stripeSpacing = 0;
    const EventTrack* syncTrack = nullptr;
    int selectionStart = 0;
    int selectionEnd = 0;
    FoundPlace found;
    int foundStart = 0; ///< of an event that was found
    int foundEnd = 0;
};

/** Paints a capture that has ended. */
void paintCapture(QPainter& painter, const ViewPainting& view);

/** Paints the sign that a capture runs, in the middle of a view. */
void paintRecording(QPainter& painter, const QRect& view, const QColor& text);

} // namespace Kestrel::UI
