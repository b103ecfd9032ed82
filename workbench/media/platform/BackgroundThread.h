#pragma once

namespace Kestrel::Workbench {

/** Lets the threads that somebody waits for go first, where the system knows threads of different
    weight: all cores decode, and still no repaint has to wait for one of them. For the calling
    thread; it cannot be taken back. */
void workInBackground();

} // namespace Kestrel::Workbench
