#pragma once

#include <KxUI/eventgraph/EventHitTestMode.h>

#include <QSize>

namespace Kestrel::UI {

/** Pixels at the left of the view that hold the names of the tracks. */
constexpr int nameColumnWidth = 200;
constexpr int timelineRowHeight = 24;

/** The largest width and height of a widget. */
constexpr int largestExtent = 16777215;

/** Where times stand. Times are milliseconds since the start of the capture. */
struct TimeScale {
    float pixelsPerMs = 1.0f;

    /** 200 + trunc(time x scale), held within some distance beyond any widget. */
    int x(int time) const;

    /** The time, with fraction, at an x of the view. */
    double time(double x) const;
};

/** The scales are quarter powers of two. The next one by `wheelDelta` / 120 steps, away from the
    user to the larger; never one at which `span` milliseconds need more than the largest width. */
float zoomed(float pixelsPerMs, int wheelDelta, int span);

/** The largest scale of the ladder at which `span` milliseconds take at most `pixels`. */
float fittingScale(double span, int pixels);

/** The horizontal scroll position that keeps a time where it is while the scale changes.
    @param cursorX x of the time in the view
    @param scroll scroll position so far
    @param hintWidth width of the view at the new scale
    @param parentWidth width of what the view scrolls in */
int scrollAfterZoom(int cursorX, int scroll, float oldScale, float newScale, int hintWidth,
                    int parentWidth);

/** The size of a view that shows `span` milliseconds, at least 800 of them, and rows of this
    height, at least 500 pixels. */
QSize viewSize(int span, float pixelsPerMs, qint64 rowsHeight);

/** The y of a value in a graph row that ends above `bottom`. */
int graphY(float value, float minValue, float maxValue, int height, int bottom);

/** A step of 1, 2 or 5 times a power of ten, in milliseconds, that is at least `pixels` wide. */
double tickStep(float pixelsPerMs, int pixels);

} // namespace Kestrel::UI
