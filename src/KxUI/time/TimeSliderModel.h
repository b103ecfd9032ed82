#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/time/TimeSliderTime.h>

#include <QFlags>
#include <QObject>

#include <memory>
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
    Q_PROPERTY(Kestrel::Base::Time startTime READ startTime WRITE setStartTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::Base::Time endTime READ endTime WRITE setEndTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::Base::Time inTime READ inTime WRITE setInTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::Base::Time outTime READ outTime WRITE setOutTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::Base::Time currentTime READ currentTime WRITE setCurrentTime NOTIFY
                   timeChanged USER true)
    Q_PROPERTY(Kestrel::UI::TimeSliderTime firstVisibleTime READ firstVisibleTime WRITE
                   setFirstVisibleTime NOTIFY timeChanged)
    Q_PROPERTY(Kestrel::UI::TimeSliderTime lastVisibleTime READ lastVisibleTime WRITE
                   setLastVisibleTime NOTIFY timeChanged)
    Q_PROPERTY(std::set<Kestrel::Base::Time> keyFrames READ keyFrames WRITE setKeyFrames NOTIFY
                   timeChanged)
    Q_PROPERTY(bool inOutLock READ inOutLock WRITE enableInOutLock NOTIFY inOutTimesModified)

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

    /** The times that setTimes() sets at once, all unset at first; its layout is frozen. */
    struct Times {
        Base::Time start = Base::InvalidTime;   ///< startTime()
        Base::Time in = Base::InvalidTime;      ///< inTime()
        Base::Time out = Base::InvalidTime;     ///< outTime()
        Base::Time end = Base::InvalidTime;     ///< endTime()
        Base::Time current = Base::InvalidTime; ///< currentTime()

        /** The same times with other ones in the place of some, so that what is set can be read:
            `setTimes(Times().withClip(1001, 1240).withCurrent(1001))`. */
        Times withClip(Base::Time first, Base::Time last) const;
        Times withMarks(Base::Time markIn, Base::Time markOut) const;
        Times withCurrent(Base::Time time) const;
    };

    explicit TimeSliderModel(QObject* parent = nullptr);
    ~TimeSliderModel() override;

    /** First and last frame of the clip, both part of it. */
    Base::Time startTime() const;
    Base::Time endTime() const;

    /** The marks; InvalidTime when unset. */
    Base::Time inTime() const;
    Base::Time outTime() const;

    /** The frame under the playhead. */
    Base::Time currentTime() const;

    /** First and last frame that the slider shows, both shown. */
    TimeSliderTime firstVisibleTime() const;
    TimeSliderTime lastVisibleTime() const;

    /** The keyframes, valid until the next change. */
    const std::set<Base::Time>& keyFrames() const;

    /** Whether the marks, rather than the visible range, define the playback range. */
    bool inOutLock() const;

    /** Stores the times that differ, without clamping, and announces them with one signal. A valid
        mark that changed turns the lock on; inOutTimesModified() follows only then. */
    void setTimes(const Times& times);
    void setTimes(Base::Time start, Base::Time in, Base::Time out, Base::Time end,
                  Base::Time current);
    Times times() const;

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
    void setInTime(Base::Time time, bool lock = false);
    void setOutTime(Base::Time time, bool lock = false);

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
    struct Private;
    const std::unique_ptr<Private> m;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(TimeSliderModel::TimeFlags)

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::TimeSliderTime)
Q_DECLARE_METATYPE(std::set<Kestrel::Base::Time>)
