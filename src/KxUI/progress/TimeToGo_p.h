#pragma once

#include <KxUI/progress/TimeToGo.h>

namespace Kestrel::UI {

/** Makes a number that changes with every report one that people can read. */
class CalmTime {
public:
    /** Takes the newest estimate, `dt` seconds after the last, and tells what to show. */
    double follow(double estimate, double dt);
    /** The next estimate is shown as it is. */
    void restart() { m_isNew = true; }

private:
    bool m_isNew = true;
    double m_counted = 0; ///< goes down by the clock and follows the estimate
    double m_shown = 0;
    double m_wrongFor = 0; ///< seconds for which the two were far apart
};

} // namespace Kestrel::UI
