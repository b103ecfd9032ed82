#pragma once

#include <QElapsedTimer>
#include <QObject>

namespace Kestrel::Workbench {

class MainWindow;

/** Plays the open sequence for some seconds and prints on standard output what came to the screen:
    pictures a second, frames dropped, and what the viewer's repaints took. Then the application
    ends. */
class PlayReport : public QObject {
    Q_OBJECT

public:
    /** Begins when the event loop does.
        @param window  borrowed; outlives the report */
    PlayReport(MainWindow* window, int seconds);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void play();
    void begin();
    void print();

    MainWindow* m_window;
    const int m_seconds;
    QElapsedTimer m_clock;
    int m_shown = 0;
    quint64 m_droppedBefore = 0;
    int m_paints = 0;
    qint64 m_paintNs = 0;
    bool m_isPainting = false;
};

} // namespace Kestrel::Workbench
