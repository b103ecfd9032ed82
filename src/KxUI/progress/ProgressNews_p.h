#pragma once

#include <KxUI/progress/ProgressTask.h>

namespace Kestrel::UI {

/** When a task is told of to somebody who does not see its bar: at each tenth, but not before half a
    minute is over, and when it ends. Times are seconds of any clock. */
class ProgressNews {
public:
    /** Whether it is time, and if so, that it is told now. The first call tells nothing.
        @param now       the time
        @param fraction  how much is done, below 0 where nobody knows
        @param state     what the task is about */
    bool isDue(double now, double fraction, ProgressTask::State state) {
        const bool hasEnded = state == ProgressTask::State::Finished ||
                              state == ProgressTask::State::Failed ||
                              state == ProgressTask::State::Cancelled;
        const bool ends = hasEnded && !m_hasEnded && m_isKnown;
        const bool isFurther = fraction >= m_fraction + tenth && now >= m_saidAt + pause;
        const bool isNew = !m_isKnown;
        m_isKnown = true;
        m_hasEnded = hasEnded;
        if (isNew || ends || (isFurther && !hasEnded)) {
            m_saidAt = now;
            m_fraction = fraction > 0 ? fraction : 0;
            return !isNew;
        }
        return false;
    }

private:
    static constexpr double tenth = 0.1 - 1e-9;
    static constexpr double pause = 30; // seconds

    bool m_isKnown = false;
    bool m_hasEnded = false;
    double m_saidAt = 0;
    double m_fraction = 0; ///< that was told last
};

} // namespace Kestrel::UI
