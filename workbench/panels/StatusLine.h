#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;

namespace Kestrel::Workbench {

class Session;

/** The facts at the foot of the window: current time, achieved rate, dropped frames, cache use. */
class StatusLine : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the widget */
    explicit StatusLine(Session* session, QWidget* parent = nullptr);

private:
    void showTime();
    void showFacts();

    Session* m_session;
    QLabel* m_time;
    QLabel* m_rate;
    QLabel* m_dropped;
    QLabel* m_cache;
    QTimer m_refresh;
};

} // namespace Kestrel::Workbench
