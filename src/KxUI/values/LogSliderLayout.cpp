#include <KxUI/values/LogSliderLayout_p.h>

#include <cmath>
#include <cstdlib>

namespace Kestrel::UI {
namespace {

constexpr int LongTick = 4;  // pixels
constexpr int ShortTick = 1; // pixels

// Whether a tick at `position` along the slider lies under `rect`.
bool checkTick(const QRect& rect, int position, Qt::Orientation orientation) {
    return rect.contains(orientation == Qt::Horizontal ? QPoint(position, rect.center().y())
                                                       : QPoint(rect.center().x(), position));
}

LogSliderMark markOf(const LogTick& tick, const LogSliderRoom& room) {
    const int length = tick.labelled ? LongTick : ShortTick;
    const QRect& groove = room.groove;
    if (room.orientation == Qt::Horizontal)
        return {{tick.pixel, groove.top() - length, tick.pixel, groove.top()}, tick.wholePower};
    return {{groove.right(), tick.pixel, groove.right() + length, tick.pixel}, tick.wholePower};
}

} // namespace

LogSliderLayout LogSliderLayout::of(const LogScale& scale, const LogSliderRoom& room,
                                    const std::function<LogSliderText(double)>& textOf) {
    LogSliderLayout layout;
    const bool horizontal = room.orientation == Qt::Horizontal;
    const QRect& groove = room.groove;
    const int first = horizontal ? groove.left() : groove.top();
    const int last = horizontal ? groove.right() : groove.bottom();
    const int extent = (horizontal ? groove.width() : groove.height()) - 1;
    if (extent == 0)
        return layout;
    const int origin = room.forward ? first : last;
    std::vector<int> spacing;
    for (int decade = scale.minExp; decade < scale.maxExp; ++decade)
        spacing.push_back((textOf(std::pow(10.0, decade)).width + 2) * 3);
    const std::vector<LogTick> ticks =
        planTicks(scale, origin, room.forward ? extent : -extent, spacing);

    for (const LogTick& tick : ticks) {
        if (tick.marked && !checkTick(room.handle, tick.pixel, room.orientation))
            layout.marks.push_back(markOf(tick, room));
    }

    // Labels stand on the edge of the widget that lies across the groove from the ticks.
    const int edge = horizontal ? room.size.height() : room.size.width();
    const int lastWidth = textOf(scale.maxReal).width;
    int freeFrom = 0; // distance from the origin up to which labels are drawn
    for (const LogTick& tick : ticks) {
        const bool atEnd = &tick == &ticks.back();
        const int distance = std::abs(tick.pixel - origin);
        const LogSliderText text = textOf(tick.value);
        // Every label goes from its tick towards the larger values, but for the last one, which
        // ends at its tick; the ones before it leave it its room.
        if (!tick.labelled || (!atEnd && (distance < freeFrom ||
                                          distance + text.width >= std::abs(extent) - lastWidth)))
            continue;
        freeFrom = distance + text.width + 2;
        const int left = room.forward == atEnd ? tick.pixel - text.width + 1 : tick.pixel;
        layout.labels.push_back({{left, 0, text.width, edge}, text.text, tick.wholePower});
    }
    return layout;
}

} // namespace Kestrel::UI
