#include "play/PlayReport.h"

#include "app/MainWindow.h"
#include "panels/ViewerCanvas.h"
#include "panels/ViewerPanel.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace Kestrel::Workbench {

PlayReport::PlayReport(MainWindow* window, int seconds)
    : m_window(window)
    , m_seconds(seconds) {
    // Folders are listed while the event loop runs; what they hold is opened then.
    constexpr int mostPatience = 20000;
    QTimer::singleShot(mostPatience, this, [this] {
        if (!m_clock.isValid())
            begin();
    });
    connect(window->session(), &Session::sequenceChanged, this, &PlayReport::play);
    QTimer::singleShot(0, this, &PlayReport::play);
}

void PlayReport::play() {
    Player* player = m_window->session()->player();
    if (m_window->session()->sequence().isEmpty() || player->isPlaying() || m_clock.isValid())
        return;
    player->play();
    // The first second fills the cache and warms everything up; it does not count.
    QTimer::singleShot(1000, this, &PlayReport::begin);
}

void PlayReport::begin() {
    Player* player = m_window->session()->player();
    if (!player->isPlaying()) {
        std::fputs("there is nothing to play\n", stderr);
        return QApplication::exit(1);
    }
    m_window->viewer()->findChild<ViewerCanvas*>()->installEventFilter(this);
    m_clock.start();
    m_droppedBefore = player->dropped();
    connect(player, &Player::frameShown, this, [this] { ++m_shown; });
    QTimer::singleShot(m_seconds * 1000, this, &PlayReport::print);
}

/** Times the repaints of the viewer. */
bool PlayReport::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Paint || m_isPainting)
        return QObject::eventFilter(watched, event);
    QElapsedTimer clock;
    clock.start();
    m_isPainting = true;
    watched->event(event);
    m_isPainting = false;
    m_paintNs += clock.nsecsElapsed();
    ++m_paints;
    return true;
}

void PlayReport::print() {
    const double seconds = double(m_clock.nsecsElapsed()) / 1e9;
    const double paintMs = m_paints == 0 ? 0.0 : double(m_paintNs) / 1e6 / m_paints;
    std::printf(
        "shown %.2f fps, dropped %llu in %.1f s, repaint %.2f ms\n", m_shown / seconds,
        static_cast<unsigned long long>(m_window->session()->player()->dropped() - m_droppedBefore),
        seconds, paintMs);
    std::fflush(stdout);
    m_window->session()->player()->stop();
    QApplication::quit();
}

} // namespace Kestrel::Workbench
