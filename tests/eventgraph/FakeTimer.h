#pragma once

#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <atomic>

namespace Kestrel::Test {

/** What a capture without an end lasts. */
constexpr float unlimited = 3.4028235e38F;

/** A clock that stands until it is set. */
class FakeTimer : public UI::IEventGraphTimer {
public:
    int time() override { return now; }

    std::atomic<int> now{0};
};

} // namespace Kestrel::Test
