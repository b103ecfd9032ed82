#pragma once

#include <KxUI/eventgraph/IEventGraphTimer.h>

namespace Kestrel::UI {

/** The default clock: milliseconds since local midnight, the time of day that
    QTime::currentTime() tells, at a hundredth of its cost. */
class KXUI_EXPORT EventGraphTimerQTime : public IEventGraphTimer {
public:
    /** 0 .. 86,399,999. Any thread. */
    int time() override;
};

} // namespace Kestrel::UI
