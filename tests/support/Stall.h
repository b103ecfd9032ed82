#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace Kestrel::Test {

/** Measures how long the interface thread is busy with one thing at most, while it lives. */
class Stall {
public:
    Stall() {
        m_timer.callOnTimeout([this] {
            m_longest = longestNow();
            m_since.start();
        });
        m_since.start();
        m_timer.start(0);
    }

    /** In milliseconds. */
    double longest() const { return double(longestNow()) / 1e6; }

private:
    qint64 longestNow() const { return std::max(m_longest, m_since.nsecsElapsed()); }

    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

} // namespace Kestrel::Test
