#pragma once

namespace Kestrel::UI {

/** Makes Kestrel::Base::TimeBase and Kestrel::Base::Time, also by reference and by pointer as in
    the signals of a drag, known to Qt under their full names, so that string-based and queued
    connections and QSignalSpy can carry them. Called by every object of this room that has them in
    a signal; from any thread, any number of times. */
void registerTimeMetaTypes();

} // namespace Kestrel::UI
