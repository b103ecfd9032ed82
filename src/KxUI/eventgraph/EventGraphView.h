#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventGraphMode.h>

#include <QMultiMap>
#include <QWidget>

#include <memory>
#include <vector>

QT_BEGIN_NAMESPACE
class QMutex;
class QReadWriteLock;
QT_END_NAMESPACE

namespace Kestrel::UI {

class CaptureState;
class EventTrack;
class IEventGraphTimer;

/** Owns a capture: switches recording on and off, keeps the tracks in order and draws them.

    Lives on the GUI thread. Other threads record into its tracks and may add and remove tracks;
    whoever needs both locks takes stateLock() first and GetMutex() second. The view may be
   destroyed while they record: its tracks are then without a view. Tracks are borrowed, except
   those that were loaded from a file. */
class KXUI_EXPORT EventGraphView : public QWidget {
    Q_OBJECT

public:
    /** A paused view. `timer` is borrowed and outlives the view; null makes the view use a clock of
        its own, the local time of day. */
    explicit EventGraphView(QWidget* parent = nullptr, IEventGraphTimer* timer = nullptr);
    ~EventGraphView() override;

    /** The clock, never null. */
    IEventGraphTimer* timer() const;

    /** Held for reading by recorders, for writing while a capture starts or stops. */
    QReadWriteLock* stateLock() const;

    /** The mutex of all views, which guards event lists and statistics. */
    static QMutex* GetMutex();

    /** Before the first capture and after a stop. Any thread. */
    bool paused() const;

    /** The mode and duration in seconds of the last capture; 3.4028235e38 is unlimited. */
    EventGraphMode mode() const;
    float durationSeconds() const;

    /** First and last time of the capture, in milliseconds on the clock. */
    int startTime() const;
    int endTime() const;

    /** Starts a capture: forgets what the tracks hold and gives them room for it. A forwards
       capture that is not unlimited stops by itself after `durationSeconds`. */
    void start(float durationSeconds, EventGraphMode mode);

    /** Empties every track and starts the time anew. */
    void clear();

    /** Adds a row for a track, above rows of equal sort key. Any thread. */
    void addTrack(EventTrack* track);

    /** Removes the rows of all tracks that have this track's sort key; the others of them go on
        recording into this view. Any thread. */
    void removeTrack(EventTrack* track);

    /** The rows from top to bottom, by sort key. Hold GetMutex() while other threads add tracks. */
    const QMultiMap<int, EventTrack*>& tracks() const;

    /** Writes the capture to a file as EventGraphWriter does with these flags; false when the file
        cannot be written. A file that was there is replaced only when all has been written. */
    bool save(const QString& path, int flags) const;

    /** Adds what a file holds, as by EventGraphReader, and shows a message box when it cannot be
        read to its end. Does nothing when the file cannot be opened. */
    void load(const QString& path);

public Q_SLOTS:
    /** Stops the capture; a history is cut to the capture's duration. */
    void stop();

Q_SIGNALS:
    /** Before a capture starts; `timed` when it will stop by itself. */
    void captureStarting(bool timed);

    /** After a capture has stopped. */
    void captureStopped();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    friend class CaptureState;
    friend class EventGraphReader;
    friend class EventTrack;

    void killStopTimer();

    std::unique_ptr<IEventGraphTimer> m_ownTimer;
    CaptureState& m_state;
    std::vector<std::unique_ptr<EventTrack>> m_loadedTracks;
    int m_stopTimer = 0;
};

} // namespace Kestrel::UI
