#pragma once

#include <functional>

namespace Kestrel::UI::Platform {

/** Runs `work` on a thread that nobody joins; no signal of the process is handled there. False when
    the system gives no thread. */
bool startDetached(std::function<void()> work);

/** Keeps the library in memory until the process ends: a thread that comes back from the system
    after a host has unloaded it would return into nothing. */
void pinLibrary();

} // namespace Kestrel::UI::Platform
