#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/time/TimeSliderTime.h>

#include <QFlags>
#include <QObject>

#include <set>

namespace Kestrel::UI {

/** The times that a timeline shows and edits: the clip, the current frame, the in and out marks,
   the visible range and the keyframes.

    Every time starts as Kestrel::Base::InvalidTime, unset. A change is announced once, after it is
    stored, by timeChanged() with the set of what changed. With the in/out lock on, the marks define
    the playback range; with it off, the visible range does.

    Owned by whoever owns the timeline; sliders observe it. Interface thread. */
class KXUI_EXPORT TimeSliderModel : public QObject {
    Q_OBJECT

public:
    /** What timeChanged() says has changed. */
    enum TimeFlag {
        StartTime = 1,         ///< startTime()
        EndTime = 2,           ///< endTime()
        InTime = 4,            ///< inTime(), changed or set again
        OutTime = 8,           ///< outTime(), changed or set again
        CurrentTime = 16,      ///< currentTime()
        KeyFrames = 32,        ///< keyFrames()
        FirstVisibleTime = 64, ///< firstVisibleTime()
        LastVisibleTime = 128  ///< lastVisibleTime()
    };
    /** Bits of TimeFlag. */
    Q_DECLARE_FLAGS(TimeFlags, TimeFlag)
    Q_FLAG(TimeFlags)

    explicit TimeSliderModel(QObject* parent = nullptr);
    ~TimeSliderModel() override;

    /** First and last frame of the clip, both part of it. */
    Base::Time startTime() const { return m_startTime; }
    Base::Time endTime() const { return m_endTime; }

    /** The marks; InvalidTime when unset. */
    Base::Time inTime() const { return m_inTime; }
    Base::Time outTime() const { return m_outTime; }

    /** The frame under the playhead. */
    Base::Time currentTime() const { return m_currentTime; }

    /** First and last frame that the slider shows, both shown. */
    TimeSliderTime firstVisibleTime() const { return m_firstVisibleTime; }
    TimeSliderTime lastVisibleTime() const { return m_lastVisibleTime; }

    /** The keyframes, valid until the next change. */
    const std::set<Base::Time>& keyFrames() const { return m_keyFrames; }

    /** Whether the marks, rather than the visible range, define the playback range. */
    bool inOutLock() const { return m_inOutLock; }

    /** Stores the times that differ, without clamping, and announces them with one signal. A valid
        mark that changed turns the lock on; inOutTimesModified() follows only then. */
    void setTimes(Base::Time start, Base::Time in, Base::Time out, Base::Time end,
                  Base::Time current);

    /** Stores without clamping. */
    void setStartTime(Base::Time time);
    void setEndTime(Base::Time time);
    void setCurrentTime(Base::Time time);

    /** Moves one end of the visible range and, where the ends would cross, the other end with it.
        inOutTimesModified() follows when the end lies inside the marks (or the clip). */
    void setFirstVisibleTime(TimeSliderTime time);
    void setLastVisibleTime(TimeSliderTime time);

    /** Replaces the keyframes; they may lie outside the clip. */
    void setKeyFrames(const std::set<Base::Time>& keyFrames);
    void setKeyFrames(const std::set<int>& keyFrames);

    /** Sets a mark, limited to the clip, and clears the other mark where the two would cross. With
        `lock` a valid mark turns the in/out lock on. While the lock is off, setting the same mark
        again announces it again. Setting any in mark while there is no out mark reports both: an
        unset mark is the earliest of all times, so it counts as crossed. */
    void setInTime(Base::Time time, bool lock);
    void setOutTime(Base::Time time, bool lock);

    /** Turns the lock on or off; turned on without any mark, it marks the whole clip. */
    void enableInOutLock(bool on);

    /** First and last frame of the playback range: the marks with the lock on, else the part of the
        clip that is visible; the clip's own ends where neither applies. */
    Base::Time playbackStartTime() const;
    Base::Time playbackEndTime() const;

    /** Number of frames of the clip; InvalidTime when an end is unset. */
    Base::Time duration() const;

    /** Number of frames of the playback range; InvalidTime when an end is unset. */
    Base::Time inOutDuration() const;

public Q_SLOTS:
    /** Clears a mark; the lock goes off with the last mark. Announced even if it was unset. */
    void clearIn();
    void clearOut();

    /** Clears both marks and the lock. */
    void clearInOut();

    /** Sets the mark at the current time with the lock, or clears it if it is there already. */
    void markIn();
    void markOut();

    /** Goes to the first or the last frame of the clip. */
    void goToStart();
    void goToEnd();

    /** Goes to the mark, or to the clip's end on that side when it is unset. */
    void goToInPoint();
    void goToOutPoint();

    /** One frame, beyond the clip if need be. Nothing while the current time is unset. */
    void frameBackwards();
    void frameForwards();

    /** `frames` back, but not before frame 0: hosts number clips from anywhere and still expect to
        reach 0, so the clip's start is no limit here. Nothing while the current time is unset. */
    void skipBackwards(int frames);

    /** `frames` forward, but not beyond the clip's end. Nothing while the current time is unset. */
    void skipForwards(int frames);

Q_SIGNALS:
    /** One or more times changed. */
    void timeChanged(Kestrel::UI::TimeSliderModel::TimeFlags flags);

    /** The playback range may have changed: a mark, the lock, or the visible range. */
    void inOutTimesModified();

private:
    Base::Time getClippedTime(Base::Time time) const;
    void store(Base::Time& member, Base::Time time, TimeFlag flag);

    Base::Time m_startTime = Base::InvalidTime;
    Base::Time m_endTime = Base::InvalidTime;
    Base::Time m_inTime = Base::InvalidTime;
    Base::Time m_outTime = Base::InvalidTime;
    Base::Time m_currentTime = Base::InvalidTime;
    TimeSliderTime m_firstVisibleTime;
    TimeSliderTime m_lastVisibleTime;
    std::set<Base::Time> m_keyFrames;
    bool m_inOutLock = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TimeSliderModel::TimeFlags)

} // namespace Kestrel::UI
