#include "FakeTimer.h"

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventUserDataInt.h>
#include <support/TestRegistry.h>

#include <thread>

using namespace Kestrel::UI;
using Type = EventTrack::Type;
using TrackType = EventTrack::TrackType;

// A stock Qt synchronises in ways that ThreadSanitizer does not see.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();
const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt5Core.so.5\ncalled_from_lib:libQt5Test.so.5\n";
}

class RecordingThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Four threads record into shared tracks and tracks of their own, while this one starts and
    // stops captures and has views die under them.
    void recordersAndControl() {
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
        const int operations = 3'000'000;
#else
        const int operations = 10'000'000;
#endif
        const auto makeTrack = [](TrackType type, EventTrack* time) {
            return std::make_unique<EventTrack>("shared", Qt::red, 1, type, 0.0f, 1.0f, 5000, 2000,
                                                20, time);
        };
        const auto time = makeTrack(TrackType::Timeline, nullptr);
        const auto value = makeTrack(TrackType::Value, nullptr);
        const auto bytes = makeTrack(TrackType::Bandwidth, time.get());

        std::atomic<int> left{operations};
        const auto record = [&](int number) {
            std::unique_ptr<EventTrack> own;
            for (int i = number; left.fetch_sub(1, std::memory_order_relaxed) > 0; ++i) {
                switch (i % 8) {
                case 0:
                    value->addEvent(float(i));
                    break;
                case 1:
                    bytes->addDataSize(100);
                    break;
                case 2:
                    if (i % 4096 == 2) {
                        own = std::make_unique<EventTrack>("own", Qt::blue, 10 + number,
                                                           TrackType::Bandwidth, 0.0f, 1.0f, 5000,
                                                           2000, 20, time.get());
                    }
                    break;
                default:
                    const EventAdder adder(time.get(),
                                           i % 16 == 3 ? new EventUserDataInt(i) : nullptr, true);
                }
            }
        };
        std::vector<std::thread> threads;
        for (int number = 0; number < 4; ++number)
            threads.emplace_back(record, number);

        int round = 0;
        for (; left.load(std::memory_order_relaxed) > 0; ++round) {
            EventGraphView view;
            for (EventTrack* track : {time.get(), value.get(), bytes.get()})
                view.addTrack(track);
            for (int capture = 0; capture < 3; ++capture) {
                view.start(capture == 1 ? 1.0f : Kestrel::Test::unlimited,
                           EventGraphMode(capture % 2));
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                QVERIFY(!time->trackTooltipText().contains("nan"));
                int opened = 0;
                const EventGraphSnapshot seen = view.snapshot();
                for (const EventTrack::Event& event : seen.tracks.back().events)
                    opened += event.type == Type::Start ? 1 : event.type == Type::End ? -1 : 0;
                QVERIFY(std::abs(opened) <= 1);
                view.stop();
            }
            if (round % 2)
                view.removeTrack(time.get());
        }
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(round > 0);
        QVERIFY(!time->graph() && !value->graph() && !bytes->graph());
    }

    // A writer that waits for the state lock stops new readers; a thread that adds a track must not
    // hold the mutex while it waits for the lock.
    void addingTracksWhileCapturesStart() {
        EventGraphView view;
        std::atomic<bool> done{false};
        std::vector<std::thread> threads;
        for (int number = 0; number < 3; ++number) {
            threads.emplace_back([&, number] {
                while (!done.load()) {
                    EventTrack track("t", Qt::red, number, TrackType::Timeline, 0, 1, 100, 100, 20,
                                     nullptr);
                    view.addTrack(&track);
                    for (int i = 0; i < 20; ++i)
                        const EventAdder adder(&track, nullptr, true);
                }
            });
        }
        for (int i = 0; i < 2000; ++i) {
            view.start(1, EventGraphMode::History);
            view.stop();
        }
        done = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(view.tracks().isEmpty());
    }
};

KXUI_TEST(RecordingThreads);
#include "RecordingThreads.moc"
