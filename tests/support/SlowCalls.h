#pragma once

#include <string>

namespace Kestrel::Test {

/** Makes every call to the system about a folder, and what lies below it, take longer, whoever in the
    process makes it: linked into a program, or preloaded into one that is compiled already
    (`LD_PRELOAD=libslow_calls.so KXUI_SLOW_FOLDER=/x KXUI_SLOW_MILLISECONDS=5`). An empty folder or
    no milliseconds for calls as they are. */
void slowDownCalls(const std::string& folder, int milliseconds);

} // namespace Kestrel::Test
