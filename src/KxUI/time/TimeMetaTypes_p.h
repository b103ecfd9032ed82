#pragma once

namespace Kestrel::UI {

/** Makes Kestrel::Base::TimeBase and Kestrel::Base::Time known to Qt under these full names, so
   that string-based and queued connections and QSignalSpy can carry them. Called by every object of
   this room that has them in a signal; from any thread, any number of times. */
void registerTimeMetaTypes();

} // namespace Kestrel::UI
