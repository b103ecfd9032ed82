#pragma once

#include <string>

namespace Kestrel::Test {

/** While it lives, the library's calls to the system about a folder, and what is below it, do not
    return: as when the server of a network share is gone. Calls elsewhere go through. One at a
    time. */
class HangingCalls {
public:
    enum Calls {
        Opens = 1,
        Statuses = 2,
        Changes = 4,
        Renamings = 8,
        Readings = 16,
        Watches = 32,
        All = 63
    };

    explicit HangingCalls(const std::string& folder, int calls = All);
    ~HangingCalls();
    HangingCalls(const HangingCalls&) = delete;
    HangingCalls& operator=(const HangingCalls&) = delete;

    /** Whether so many calls hang, now or after a while. */
    bool isReached(int calls, int milliseconds = 20000) const;

    /** Lets them return. */
    void release();
};

/** While it lives, calls about a folder, and what is below it, fail: after the first `skipped`, and
    `count` of them. One at a time. */
class FailingCalls {
public:
    FailingCalls(const std::string& folder, int calls, int error, int skipped = 0,
                 int count = 1 << 30);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

} // namespace Kestrel::Test
