#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventGraphMode.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventHitTestMode.h>
#include <KxUI/eventgraph/EventTrack.h>

#include <QMultiMap>
#include <QWidget>

#include <memory>

QT_BEGIN_NAMESPACE
class QMutex;
class QReadWriteLock;
QT_END_NAMESPACE

namespace Kestrel::UI {

class IEventGraphTimer;
struct EventGraphSnapshot;
struct EventGraphViewPrivate;

/** Owns a capture: switches recording on and off, keeps the tracks in order and draws them.

    Lives on the interface thread. Other threads record into its tracks and may add and remove
    tracks; whoever needs both locks takes stateLock() first and GetMutex() second. The view may be
    destroyed while they record: its tracks are then without a view. Tracks are borrowed, except
    those that were loaded from a file. */
class KXUI_EXPORT EventGraphView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)
    Q_PROPERTY(int backgroundStripeSpacing READ backgroundStripeSpacing WRITE
                   setBackgroundStripeSpacing NOTIFY backgroundStripeSpacingChanged)
    Q_PROPERTY(bool hideEmptyTracks READ hideEmptyTracks WRITE setHideEmptyTracks NOTIFY
                   hideEmptyTracksChanged)
    Q_PROPERTY(Kestrel::UI::EventHitTestMode hitTestMode READ hitTestMode WRITE setHitTestMode
                   NOTIFY hitTestModeChanged)
    Q_PROPERTY(float horizontalScale READ horizontalScale NOTIFY layoutChanged)
    Q_PROPERTY(int selectionStart READ selectionStart NOTIFY selectionChanged)
    Q_PROPERTY(int selectionEnd READ selectionEnd NOTIFY selectionChanged)

public:
    /** The duration in seconds of a capture that goes on until it is stopped. */
    static constexpr float unlimitedDuration = 3.4028235e38F;

    /** What save() writes beside times and names. */
    using SaveFlags = EventGraphWriter::Flags;
    /** Write the text of user data. */
    static constexpr EventGraphWriter::Flag IncludeUserData = EventGraphWriter::IncludeUserData;
    /** Do not write the text when the event before has the same user data object. */
    static constexpr EventGraphWriter::Flag SkipDuplicates = EventGraphWriter::SkipDuplicates;

    /** A paused view. `timer` is borrowed and outlives the view; null makes the view use a clock of
        its own, the local time of day. */
    explicit EventGraphView(QWidget* parent = nullptr, IEventGraphTimer* timer = nullptr);
    ~EventGraphView() override;

    /** The clock, never null. */
    IEventGraphTimer* timer() const;

    /** Held for reading by recorders, for writing while a capture starts or stops. */
    QReadWriteLock* stateLock() const;

    /** The mutex of all views, which guards event lists and statistics. Hosts need it as little as
        stateLock(): every call takes what it needs. Whoever holds one of them may make no call of a
        view or a track but tracks() and EventTrack::events(). */
    static QMutex* GetMutex();

    /** Before the first capture and after a stop. Any thread. */
    bool paused() const;

    /** The mode of the last capture, and its duration in seconds or unlimitedDuration. */
    EventGraphMode mode() const;
    float durationSeconds() const;

    /** First and last time of the capture, in milliseconds on the clock. */
    int startTime() const;
    int endTime() const;

    /** Starts a capture: forgets what the tracks hold and lets them work out how many events they
        keep. A forwards capture that is not unlimited stops by itself after `durationSeconds`. */
    void start(float durationSeconds, EventGraphMode mode);

    /** Empties every track and starts the time anew. */
    void clear();

    /** Adds a row for a track, above rows of equal sort key; null is ignored. Any thread. */
    void addTrack(EventTrack* track);

    /** Removes the rows of all tracks that have this track's sort key; the others of them go on
        recording into this view. Null is ignored. Any thread. */
    void removeTrack(EventTrack* track);

    /** What the capture holds now, all of one moment. Costs microseconds, whatever it holds. Any
        thread, but not under a lock of the view. */
    EventGraphSnapshot snapshot() const;

    /** The tracks that have rows, from top to bottom, by sort key: to be read only while no thread
        adds or deletes tracks, or under GetMutex(). snapshot() has neither condition. */
    const QMultiMap<int, EventTrack*>& tracks() const;

    /** Pixels from one background stripe to the next; 0 or less for none. Default 40. */
    void setBackgroundStripeSpacing(int pixels);
    int backgroundStripeSpacing() const;

    /** A track at whose starts and samples lines run through all rows; null for none. Borrowed, and
        forgotten when it leaves the view. */
    void setSyncTrack(EventTrack* track);
    EventTrack* syncTrack() const;

    /** Whether tracks without activities or samples have no row. Default false. */
    void setHideEmptyTracks(bool hide);
    bool hideEmptyTracks() const;

    /** Default DirectHitOnly. */
    void setHitTestMode(EventHitTestMode mode);
    EventHitTestMode hitTestMode() const;

    /** Pixels per millisecond; 1 at first. */
    float horizontalScale() const;

    /** The text for the event at a point of the view, in the user's language; empty without one.
        Where the event is goes to `hitRect`, which may be null. */
    QString eventTextAt(const QPoint& point, QRect* hitRect = nullptr) const;

    /** The whole capture without scrolling; 200 x 100 while it runs. */
    QSize sizeHint() const override;

    /** Zooms by steps, positive to the larger, with a point of the view staying where it is. */
    void zoomAbout(int x, int steps);

    /** Makes the whole capture, or the selection, as large as fits. Nothing without a selection. */
    void zoomToFit();
    void zoomToSelection();

    /** The selected time in milliseconds since the start; equal when nothing is selected. */
    int selectionStart() const;
    int selectionEnd() const;
    /** Selects a time; both ends are brought into the capture and into order. */
    void setSelection(int start, int end);

    /** Selects and shows the next (or previous) track whose name, or event whose text holds `text`
        in any case, after what was found before; wraps around. False when nothing does. */
    bool findNext(const QString& text, bool backwards = false);

    /** Writes the capture for trace viewers, in the Trace Event Format as JSON: activities,
        instants and counters. False when the file cannot be written. */
    bool exportTrace(const QString& path) const;

    /** Writes the capture to a file as EventGraphWriter does; false when the file cannot be
        written. A file that was there is replaced only when all has been written. */
    bool save(const QString& path, SaveFlags flags) const;
    bool save(const QString& path, int flags) const;

    /** Adds what a file holds, as by EventGraphReader, and shows a message box when it cannot be
        read to its end. Does nothing when the file cannot be opened. Whether all was read. */
    bool load(const QString& path);

public Q_SLOTS:
    /** Stops the capture; a history is cut to the capture's duration. */
    void stop();

    /** Hides the text of an event. */
    void hidePopup();

Q_SIGNALS:
    /** Before a capture starts; `timed` when it will stop by itself. */
    void captureStarting(bool timed);

    /** After a capture has stopped. */
    void captureStopped();

    /** After a capture has started or stopped. */
    void pausedChanged(bool paused);

    /** After the size, scale or times of what is shown have changed. */
    void layoutChanged();

    /** After another span of time has been selected. */
    void selectionChanged();

    /** After the settings of these names have changed. */
    void backgroundStripeSpacingChanged(int pixels);
    void hideEmptyTracksChanged(bool hide);
    void hitTestModeChanged(Kestrel::UI::EventHitTestMode mode);

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    friend struct EventGraphViewPrivate;

    const std::unique_ptr<EventGraphViewPrivate> d;
};

} // namespace Kestrel::UI
