#pragma once

#include <KxUI/Export.h>
#include <KxUI/eventgraph/EventGraphMode.h>

#include <QWidget>

QT_BEGIN_NAMESPACE
class QAction;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QScrollArea;
class QToolBar;
class QTreeWidget;
QT_END_NAMESPACE

namespace Kestrel::UI {

class EventGraphView;
class EventTrack;
class IEventGraphTimer;

/** The profiler's window: starts and stops captures, saves and loads them, and shows them in an
    EventGraphView with a ruler, a search and statistics.

    One window serves the process, instance(); each loaded file opens in a further one. GUI thread,
    but addTrack() and removeTrack() are for any thread. */
class KXUI_EXPORT EventGraph : public QWidget {
    Q_OBJECT

public:
    /** A tool window of its parent, or a window of its own. `timer` is borrowed and outlives the
        window; null stands for the local time of day. */
    explicit EventGraph(QWidget* parent = nullptr, IEventGraphTimer* timer = nullptr);
    ~EventGraph() override;

    /** The window of the process, made at the first call with the timer of SetTimer(). The library
        destroys it only with the application.

        Null unless a QApplication runs. The first call decides that for good: one that comes before
        the application is made leaves the process without a window. Code that records needs none,
        a track that is in no view keeps nothing. */
    static EventGraph* instance();

    /** The clock of the window that instance() will make; borrowed. */
    static void SetTimer(IEventGraphTimer* timer);

    /** The view in the window. */
    EventGraphView* view() const { return m_view; }

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

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Starts a capture that stops after the duration in the toolbar. */
    void singleShot();

    /** Starts a capture in the mode in the toolbar: forwards without a limit, or a history of the
        duration. */
    void start();

    /** Stops the capture. */
    void stop();

    /** Empties every track. */
    void clear();

    /** Asks for a file and saves the capture. */
    void save();

    /** Asks for a file and opens it in a new window. */
    void load();

    /** Asks for a file and writes the capture for trace viewers. */
    void exportTrace();

private Q_SLOTS:
    void captureStarting(bool timed);
    void captureStopped();
    void modeComboIndexChanged(int index);
    void hitTestModeComboChanged(int index);
    void hideEmptyTracksChanged(int state);
    void scrollChanged();

private:
    void makeCaptureToolBar(QToolBar* bar);
    void makeFileToolBar(QToolBar* bar);
    void makeLookToolBar(QToolBar* bar);
    EventGraphMode mode() const;
    void find(bool backwards);
    void fillStatistics();
    void setCapturing(bool capturing);

    EventGraphView* m_view;
    QScrollArea* m_scrollArea;
    QTreeWidget* m_statistics;

    QAction* m_singleShot = nullptr;
    QAction* m_start = nullptr;
    QLabel* m_modeLabel = nullptr;
    QComboBox* m_mode = nullptr;
    QLabel* m_durationLabel = nullptr;
    QDoubleSpinBox* m_duration = nullptr;
    QCheckBox* m_hideEmptyTracks = nullptr;
    QLabel* m_hitTestLabel = nullptr;
    QComboBox* m_hitTest = nullptr;
    QAction* m_save = nullptr;
    QCheckBox* m_includeUserData = nullptr;
    QCheckBox* m_skipDuplicates = nullptr;
    QList<QAction*> m_lookActions;
    QAction* m_showStatistics = nullptr;
    QLineEdit* m_search = nullptr;
};

} // namespace Kestrel::UI
