#pragma once

#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <atomic>

namespace Kestrel::Test {

/** What a capture without an end lasts. */
constexpr float unlimited = UI::EventGraphView::unlimitedDuration;

/** A clock that stands until it is set. */
class FakeTimer : public UI::IEventGraphTimer {
public:
    int time() override { return now; }

    std::atomic<int> now{0};
};

} // namespace Kestrel::Test
