#pragma once

#include <string>

namespace Kestrel::Test {

/** Makes every call to the system about a folder, and what lies below it, take longer, whoever in the
    process makes it: linked into a program, or preloaded into one that is compiled already
    (`LD_PRELOAD=libslow_calls.so KXUI_SLOW_FOLDER=/x KXUI_SLOW_MILLISECONDS=5`). An empty folder or
    no milliseconds for calls as they are. */
void slowDownCalls(const std::string& folder, int milliseconds);

/** While it lives, the process ends with a word about it when the thread that made it makes a call to
    the system about a folder or what lies below it: nothing that this thread does waits for a disk.
    One at a time. */
class ForbiddenCalls {
public:
    explicit ForbiddenCalls(const std::string& folder);
    ~ForbiddenCalls();
    ForbiddenCalls(const ForbiddenCalls&) = delete;
    ForbiddenCalls& operator=(const ForbiddenCalls&) = delete;
};

} // namespace Kestrel::Test
