#pragma once

#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderGeometry_p.h>

#include <QVarLengthArray>

#include <optional>

namespace Kestrel::UI {

/** What a drag needs to know about the slider at the time of an input. */
struct TimeSliderScene {
    TimeSliderGeometry geometry;
    Base::Time currentTime = Base::InvalidTime;
    Base::Time inTime = Base::InvalidTime;
    Base::Time outTime = Base::InvalidTime;
    bool inOutLock = false; ///< without it the marks are not shown and cannot be caught
    bool mainTransport = false;
    int startDragDistance = 10;
};

/** A press, plainly. */
struct TimeSliderPress {
    int x = 0;
    int y = 0;
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

/** One thing for the slider to do. */
struct TimeSliderCommand {
    enum Kind {
        AllowTimeUpdates,   ///< emit setDoUpdateTime(true)
        HoldTimeUpdates,    ///< emit setDoUpdateTime(false)
        BeginTimeDrag,      ///< emit beginTimeDrag with `first` and, for both marks, `second`
        UpdateTimeDrag,     ///< emit updateTimeDrag with what the model holds for `handle`
        EndTimeDrag,        ///< emit endTimeDrag
        SetInTime,          ///< mark `first`
        SetOutTime,         ///< mark `first`
        SetInAndOutTime,    ///< mark `first` and `second`
        SetCurrentTime,     ///< go to `first`
        SetFirstVisible,    ///< show from `first`
        SetLastVisible,     ///< show up to `first`
        SetVisibleRange,    ///< show `first` to `second`
        PutBackMarks,       ///< mark `first` and `second` with the lock `on`, as at the press
        PutBackVisible,     ///< show `first` to `second`, as at the press
        RedrawRectangle,    ///< the zoom rectangle changed
        InOutTimesModified, ///< emit inOutTimesModified
        ZoomOrPanChanged,   ///< emit zoomOrPanChanged
        RightOrMidClicked,  ///< emit rightOrMidClicked
        StartAutoScroll,
        StopAutoScroll,
        ClearHover,
        AskDerivedClass, ///< offer the press to the derived class, else beginPlayhead()
        MoveDerived,     ///< the derived class's handle is at `first`
        TakeBackDerived, ///< the derived class puts back what it dragged
        ReleaseDerived   ///< the drag of the derived class's handle is over
    };
    Kind kind;
    TimeSliderTime first = {};
    TimeSliderTime second = {};
    TimeSlider::HandleType handle = TimeSlider::NoHandle;
    bool on = false;
};

/** What to do, in this order. */
using TimeSliderCommands = QVarLengthArray<TimeSliderCommand, 8>;

/** The state of the mouse on a slider. Each input moves it on and answers with commands; only the
    slider executes them. */
class TimeSliderDrag {
public:
    using Handle = TimeSlider::HandleType;

    Handle handle() const { return m_handle; }
    bool isActive() const { return m_handle != TimeSlider::NoHandle; }

    /** The button of the press, as long as its release is awaited. */
    Qt::MouseButton button() const { return m_button; }

    /** A press. It ends a drag that is still going on; the right button's takes one of the left
        button's back instead. */
    TimeSliderCommands press(const TimeSliderScene& scene, const TimeSliderPress& press);

    /** Answers AskDerivedClass: the derived class took the press. */
    void beginDerived() { m_handle = TimeSlider::DerivedHandle; }

    /** Answers AskDerivedClass: it did not. */
    TimeSliderCommands beginPlayhead(const TimeSliderScene& scene);

    /** beginTimeDrag() was emitted outside of the commands. */
    void setAnnounced() { m_announced = true; }

    /** Whether a move to x would be one to where the last move went. */
    bool isAt(int x) const { return x == m_lastX; }

    /** Makes the next move count wherever it goes. */
    void forgetLastMove() { m_lastX.reset(); }

    /** Whether moves go to a time, which may be snapped, rather than by a distance. */
    bool isToTime() const;

    /** That time, before snapping. */
    Base::Time timeAt(const TimeSliderScene& scene, int x) const;

    /** A move to x, at `time` after snapping. */
    TimeSliderCommands move(const TimeSliderScene& scene, int x, Base::Time time);

    /** The release of a button; only that of the press ends the drag. */
    TimeSliderCommands release(Qt::MouseButton button);

    /** The drag cannot go on (the slider was hidden, the release went elsewhere): what was dragged
        stays where it is. */
    TimeSliderCommands cancel();

    /** Puts back what the press found and ignores what comes until the release. Nothing without a
        drag. */
    TimeSliderCommands takeBack(const TimeSliderScene& scene);

    /** The swept range while a zoom rectangle is dragged, in order; invalid if there is none. */
    TimeSliderRange zoomRectangle() const;

private:
    void begin(const TimeSliderScene& scene, const TimeSliderPress& press);
    void pressRangeBar(const TimeSliderGeometry& geometry, int x);
    void pressRuler(const TimeSliderScene& scene, const TimeSliderPress& press,
                    TimeSliderCommands& commands);
    void pressWithControl(const TimeSliderScene& scene, int x, TimeSliderCommands& commands);
    void grab(Handle handle, const TimeSliderScene& scene, Base::Time time);
    void beginMarks(Handle handle, const TimeSliderScene& scene, TimeSliderTime time,
                    TimeSliderTime second, TimeSliderCommands& commands);

    void moveMark(TimeSliderTime time, TimeSliderCommands& commands) const;
    void moveMarks(const TimeSliderScene& scene, TimeSliderTime time,
                   TimeSliderCommands& commands) const;
    void movePlayhead(const TimeSliderScene& scene, TimeSliderTime time,
                      TimeSliderCommands& commands);
    void movePan(const TimeSliderScene& scene, int x, TimeSliderCommands& commands) const;
    void moveZoom(const TimeSliderScene& scene, int x, TimeSliderCommands& commands) const;
    void moveRangeBar(const TimeSliderScene& scene, int x, TimeSliderCommands& commands) const;
    void show(const TimeSliderScene& scene, const TimeSliderRange& range,
              TimeSliderCommands& commands) const;

    void end(TimeSliderCommands& commands);
    void endAnnounced(TimeSliderCommands& commands);
    bool isMark() const;
    bool isOfVisibleRange() const;

    Handle m_handle = TimeSlider::NoHandle;
    Qt::MouseButton m_button = Qt::NoButton;
    int m_pressX = 0;
    std::optional<int> m_lastX;
    int m_grabOffset = 0;      ///< from the handle to the press
    bool m_started = false;    ///< moved beyond a click's tremor
    bool m_announced = false;  ///< beginTimeDrag() waits for its endTimeDrag()
    bool m_takenBack = false;  ///< nothing happens until the release
    TimeSliderScene m_pressed; ///< what the press found
    TimeSliderTime m_rangeBarGrabTime;
    TimeSliderTime m_zoomStart;
    TimeSliderTime m_zoomEnd;
};

} // namespace Kestrel::UI
