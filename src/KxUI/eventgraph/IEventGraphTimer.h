#pragma once

#include <KxUI/Export.h>

namespace Kestrel::UI {

/** The profiler's clock. */
class KXUI_EXPORT IEventGraphTimer {
public:
    virtual ~IEventGraphTimer();

    /** The current time in milliseconds. Differences are taken modulo 2^32, so the clock may wrap.

        Called from any recording thread, under the locks of the view: it must be quick and must not
        record. */
    virtual int time() = 0;
};

} // namespace Kestrel::UI
