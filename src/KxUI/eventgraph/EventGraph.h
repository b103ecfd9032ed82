#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventGraphMode.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class EventGraphView;
class EventTrack;
class IEventGraphTimer;
struct EventGraphPrivate;

/** The profiler's window: starts and stops captures, saves and loads them, and shows them in an
    EventGraphView with a ruler, a search and statistics.

    One window serves the process, instance(); each loaded file opens in a further one. Interface
    thread, but addTrack() and removeTrack() are for any thread. */
class KXUI_EXPORT EventGraph : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)
    Q_PROPERTY(
        bool hideEmptyTracks READ hideEmptyTracks WRITE setHideEmptyTracks NOTIFY emptyTracksHidden)
    Q_PROPERTY(bool remembersPlace READ remembersPlace WRITE setRemembersPlace NOTIFY
                   remembersPlaceChanged)

public:
    /** A tool window of its parent, or a window of its own. `timer` is borrowed and outlives the
        window; null stands for the local time of day. */
    explicit EventGraph(QWidget* parent = nullptr, IEventGraphTimer* timer = nullptr);
    ~EventGraph() override;

    /** The window of the process, made at the first call with the timer of SetTimer(). It lives as
        long as the application.

        Null where there is no QApplication. Call it only when there is one: after a first call that
        came too early the result stays null. Code that records needs no window, since a track that
        is in no view keeps nothing. */
    static EventGraph* instance();

    /** The clock of the window that instance() will make; borrowed, null for the time of day. */
    static void SetTimer(IEventGraphTimer* timer);

    /** The view in the window. */
    EventGraphView* view() const;

    /** Sets duration (seconds) and mode in the toolbar and starts the view with them. */
    void start(float seconds, EventGraphMode mode);

    /** What the view does, as EventGraphView has it. */
    bool paused() const;
    void addTrack(EventTrack* track);
    void removeTrack(EventTrack* track);
    void setBackgroundStripeSpacing(int pixels);

    /** Whether tracks without activities or samples have no row; sets the check box, too. */
    void setHideEmptyTracks(bool hide);
    bool hideEmptyTracks() const;

    /** Whether the window remembers from session to session, by a WidgetTracker, where it was, how
        its splitter stood and whether it showed statistics. Default false.

        Turned on, the window goes to the place of the last session, so do that before it is shown.
        The place is stored when the window is closed, and when the application quits or the window
        is destroyed while it is open. AppSettings keeps it under the object name of the window; a
        window without a name gets the name "EventGraph". Several windows need different names. */
    void setRemembersPlace(bool remembers);
    bool remembersPlace() const;

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Starts a capture that stops after the duration in the toolbar. */
    void singleShot();

    /** Starts a capture in the mode in the toolbar: forwards without a limit, or a history of the
        duration. startCapture() is the same for connections by pointer. */
    void start();
    void startCapture();

    /** Stops the capture. */
    void stop();

    /** Empties every track. */
    void clear();

    /** Asks for a file by a FileChooserDialog, and saves the capture when one was chosen; returns at
        once, as the two below. */
    void save();

    /** Asks for a file, and opens it in a new window. */
    void load();

    /** Asks for a file, and writes the capture for trace viewers. */
    void exportTrace();

Q_SIGNALS:
    /** As EventGraphView::pausedChanged. */
    void pausedChanged(bool paused);
    /** As EventGraphView::hideEmptyTracksChanged. */
    void emptyTracksHidden(bool hidden);
    /** After setRemembersPlace() has made a difference. */
    void remembersPlaceChanged(bool remembers);

private Q_SLOTS:
    void captureStarting(bool timed);
    void captureStopped();
    void modeComboIndexChanged(int index);
    void hitTestModeComboChanged(int index);
    void hideEmptyTracksChanged(int state);
    void scrollChanged();

private:
    friend struct EventGraphPrivate;

    const std::unique_ptr<EventGraphPrivate> d;
};

} // namespace Kestrel::UI
