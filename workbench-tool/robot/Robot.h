#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <random>

namespace Kestrel::UI {
class Dock;
}

namespace Kestrel::Workbench {

class MainWindow;

/** Uses the window as a hasty user would, for hours if need be: clicks, drags and types anywhere,
    plays and scrubs, grades and undoes, measures by scopes, opens sequences, tears panes off, saves
    and loads layouts, captures profiles. What it does follows from its seed; how far it comes in a
    minute does not. Once a minute it puts everything back as it was in the beginning and prints what
    memory and objects are left. */
class Robot : public QObject {
    Q_OBJECT

public:
    /** Begins when the event loop does, and ends the application after `minutes`.
        @param window  borrowed; outlives the robot */
    Robot(MainWindow* window, unsigned seed, int minutes);
    ~Robot() override;

    /** Takes what would be opened by another program, and leaves it. */
    Q_INVOKABLE void stay(const QUrl&) {}

private:
    using Deed = void (Robot::*)();

    void step();
    void rescue();
    void rest();
    void count();

    void click();
    void drag();
    void wheel();
    void type();
    void scrub();
    void trigger();
    void open();
    void tear();
    void dragTab();
    void arrange();
    void profile();
    void grade();
    void undo();
    void measure();
    void exportSome();

    int below(int many);
    bool oneIn(int many) { return below(many) == 0; }
    QPoint pointIn(const QRect& rect);
    /** A widget under a random point of a random window. */
    QWidget* anyWidget();
    UI::Dock* anyDock();
    void dragOn(QWidget* widget, const QPoint& from, const QPoint& to);

    MainWindow* m_window;
    std::mt19937 m_random;
    int m_minutes;
    int m_minute = 0;
    int m_steps = 0;
    QTemporaryDir m_folder;
    QElapsedTimer m_clock;
    QTimer m_step;
    QTimer m_rescue;
};

} // namespace Kestrel::Workbench
