#pragma once

#include <QTimer>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QToolButton;

namespace Kestrel::UI {
class DoubleSpinBox;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The facts at the foot of the window: current time, achieved rate, dropped frames, and the cache,
    whose size can be chosen there. */
class StatusLine : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the widget */
    explicit StatusLine(Session* session, QWidget* parent = nullptr);

    /** Shows a widget between the facts of playback and those of the cache, which it then owns. */
    void setMiddle(QWidget* widget);

signals:
    /** The user chose another size of the cache, which the session has now. */
    void cacheSizeChosen(int mebibytes);

private:
    UI::DoubleSpinBox* makeCacheSize();
    void chooseCacheSize();
    void showCacheSize();
    void showTime();
    void showFacts();

    Session* m_session;
    QLabel* m_time;
    QToolButton* m_rate;
    QLabel* m_dropped;
    QLabel* m_cache;
    UI::DoubleSpinBox* m_cacheSize;
    QLabel* m_cached;
    QBoxLayout* m_middle = nullptr;
    QTimer m_refresh;
};

} // namespace Kestrel::Workbench
