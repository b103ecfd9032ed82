#pragma once

#include <string>

namespace Kestrel::Test {

/** While it lives, the library's calls to the system about a folder, and what is below it, do not
    return: as when the server of a network share is gone. Calls elsewhere go through. One at a
    time. */
class HangingCalls {
public:
    explicit HangingCalls(const std::string& folder);
    ~HangingCalls();
    HangingCalls(const HangingCalls&) = delete;
    HangingCalls& operator=(const HangingCalls&) = delete;

    /** Whether so many calls hang, now or after a while. */
    bool isReached(int calls) const;

    /** Lets them return. */
    void release();
};

} // namespace Kestrel::Test
