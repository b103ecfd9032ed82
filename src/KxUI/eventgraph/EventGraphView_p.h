#pragma once

#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventSearch_p.h>
#include <KxUI/eventgraph/SelectionDrag_p.h>

#include <vector>

QT_BEGIN_NAMESPACE
class QScrollBar;
QT_END_NAMESPACE

namespace Kestrel::UI {

class EventPopup;
struct ViewColors;
struct ViewPainting;

/** What a view keeps, and how it moves over the capture. */
struct EventGraphViewPrivate {
    EventGraphViewPrivate(EventGraphView* view, IEventGraphTimer* timer);

    static EventGraphViewPrivate& of(const EventGraphView& view) { return *view.d; }

    void killStopTimer();
    /** What is shown has changed as a whole. */
    void relayout();
    /** Of the capture, in milliseconds. */
    int span() const;
    /** As of now. */
    const Scene& upToDateScene() const;
    ViewPainting painting(const QRect& visible, const ViewColors& colors) const;

    /** What of the view can be seen in what it is scrolled in. */
    QRect visiblePart() const;
    /** The x in the middle of the times that can be seen. */
    int middle() const;
    /** That of the scroll area the view is in, or null. */
    QScrollBar* scrollBar(Qt::Orientation orientation) const;
    void scrollTo(int horizontal);
    void scrollBy(Qt::Orientation orientation, int distance);
    /** What a key scrolls; false for other keys. */
    bool scrollByKey(int key);
    /** Changes the scale while the time at an x of the view stays where it is. */
    void setScale(float pixelsPerMs, int fixedX);
    /** Shows the times between two, as large as the ladder of scales allows. */
    void showTimes(int start, int end);

    /** Marks what was found and brings it into sight. */
    void showFound(const FoundPlace& place);
    void showFoundEvent(const SceneRow& row);
    /** Ends selection and mark; false when there were none. */
    bool forgetMarks();
    void execute(const SelectionDrag::Command& command);

    EventGraphView* const q;
    std::unique_ptr<IEventGraphTimer> ownTimer;
    CaptureState& state;
    std::vector<std::unique_ptr<EventTrack>> loadedTracks;
    int stopTimer = 0;

    int stripeSpacing = 40;
    TimeScale scale;
    bool hideEmptyTracks = false;
    EventHitTestMode hitTestMode = EventHitTestMode::DirectHitOnly;
    mutable Scene scene;
    EventPopup* popup = nullptr;
    SelectionDrag drag;
    int selectionStart = 0;
    int selectionEnd = 0;
    FoundPlace found;
    int foundStart = 0;
    int foundEnd = 0;
};

} // namespace Kestrel::UI
