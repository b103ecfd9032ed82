#include <support/Bench.h>

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventHitTest_p.h>
#include <KxUI/eventgraph/EventUserDataInt.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>
#include <KxUI/eventgraph/Locks_p.h>

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QMutex>
#include <QPainter>
#include <QProcess>
#include <QReadWriteLock>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <malloc.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <limits>
#include <memory>

using namespace Kestrel;
using namespace Kestrel::UI;

#if defined(KXUI_BENCH_LTTNG)
void lttngPair(void* data);
bool lttngEnabled();
#endif

namespace {

using Type = EventTrack::Type;
constexpr float unlimited = EventGraphView::unlimitedDuration;

EventTrack makeTrack(int maxEvents) {
    return EventTrack("Track", Qt::red, 0, EventTrack::TrackType::Timeline, 0, 1, maxEvents,
                      maxEvents, 50, nullptr);
}

// Emptied outside the measured time whenever it is full, so that every pair is kept.
void recordPairs(benchmark::State& state) {
    constexpr int pairs = 1 << 18;
    EventGraphView view;
    EventTrack track = makeTrack(2 * pairs);
    view.addTrack(&track);
    view.start(unlimited, EventGraphMode::Forwards);
    int left = pairs;
    for (auto _ : state) {
        if (left-- == 0) {
            state.PauseTiming();
            track.clear();
            left = pairs - 1;
            state.ResumeTiming();
        }
        const EventAdder adder(&track, nullptr, true);
    }
    if (track.events().size() != std::size_t(2 * (pairs - left)))
        state.SkipWithError("events were lost");
}

// What the two promised locks of each event cost alone.
void takeLocks(benchmark::State& state) {
    EventGraphView view;
    for (auto _ : state) {
        for (int event = 0; event < 2; ++event) {
            const StateReadGuard stateGuard(*view.stateLock());
            const MutexGuard guard(*EventGraphView::GetMutex());
        }
    }
}

void recordPaused(benchmark::State& state) {
    EventGraphView view;
    EventTrack track = makeTrack(100);
    view.addTrack(&track);
    for (auto _ : state)
        const EventAdder adder(&track, nullptr, true);
}

void recordDisabled(benchmark::State& state) {
    EventGraphView view;
    EventTrack track = makeTrack(100);
    view.addTrack(&track);
    view.start(unlimited, EventGraphMode::Forwards);
    bool enabled = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(enabled);
        const EventAdder adder(&track, nullptr, enabled);
    }
}

// Reports a figure of its own in place of the CPU time of an iteration.
void report(benchmark::State& state, double figure) {
    state.counters["items_per_second"] = 1e9 / figure;
}

// The heap's growth.
void memoryPerEvent(benchmark::State& state) {
    constexpr int events = 1'000'000;
    for (auto _ : state) {
        EventGraphView view;
        EventTrack track = makeTrack(events);
        view.addTrack(&track);
        view.start(unlimited, EventGraphMode::Forwards);
        const std::size_t before = mallinfo2().uordblks;
        for (int i = 0; i < events; ++i)
            track.addEvent(Type::Sample, nullptr);
        const std::size_t after = mallinfo2().uordblks;
        report(state, double(after - before) / events);
    }
}

// How long a recorder waits for the locks while a capture of a million held events starts anew.
void startOverEvents(benchmark::State& state) {
    constexpr int events = 1'000'000;
    EventGraphView view;
    EventTrack track = makeTrack(events);
    view.addTrack(&track);
    view.start(unlimited, EventGraphMode::Forwards);
    std::int64_t best = std::numeric_limits<std::int64_t>::max();
    for (auto _ : state) {
        for (int i = 0; i < events; ++i)
            track.addEvent(Type::Sample, new EventUserDataInt(i));
        std::atomic<bool> done{false};
        std::int64_t longest = 0;
        std::atomic<bool> running{false};
        std::unique_ptr<QThread> prober(QThread::create([&] {
            using Clock = std::chrono::steady_clock;
            while (!done) {
                const auto from = Clock::now();
                view.stateLock()->lockForRead();
                EventGraphView::GetMutex()->lock();
                EventGraphView::GetMutex()->unlock();
                view.stateLock()->unlock();
                const std::int64_t waited = std::chrono::nanoseconds(Clock::now() - from).count();
                longest = std::max(longest, waited);
                running = true;
            }
        }));
        prober->start();
        while (!running)
            QThread::yieldCurrentThread();
        view.start(unlimited, EventGraphMode::Forwards);
        done = true;
        prober->wait();
        best = std::min(best, longest);
        report(state, double(best));
    }
}

// A capture of a million events in one track, the end of each activity with a text of its own.
struct MillionEvents {
    explicit MillionEvents(bool withData)
        : track(makeTrack(count)) {
        view.addTrack(&track);
        view.start(unlimited, EventGraphMode::Forwards);
        int& time = clock.now;
        for (int i = 0; i < count / 2; ++i) {
            track.addEvent(Type::Start, nullptr, time += 3);
            track.addEvent(Type::End,
                           withData ? new EventUserDataString(QString("frame %1.exr").arg(i))
                                    : nullptr,
                           time += 7);
        }
        view.stop();
    }

    static constexpr int count = 1'000'000;
    struct Clock : IEventGraphTimer {
        int time() override { return now; }
        int now = 1000;
    } clock;
    EventGraphView view{nullptr, &clock};
    EventTrack track;
};

// The files are in memory where that is possible: the disk is not what is compared.
QString filePath(const char* name) {
    static const QTemporaryDir folder(QFile::exists("/dev/shm") ? "/dev/shm/kxui-XXXXXX"
                                                                : QString());
    return folder.filePath(name);
}

void saveOurs(benchmark::State& state, bool withData) {
    const MillionEvents events(withData);
    for (auto _ : state) {
        if (!events.view.save(filePath("ours.xml"), EventGraphWriter::IncludeUserData))
            state.SkipWithError("not saved");
    }
}

// What one writes first.
void savePlain(const EventGraphView& view, const QString& path) {
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("EventGraph");
    xml.writeAttribute("StartTime", QString::number(view.startTime()));
    xml.writeAttribute("EndTime", QString::number(view.endTime()));
    for (const EventTrack* track : view.tracks()) {
        xml.writeStartElement("Track");
        xml.writeAttribute("Name", track->name());
        xml.writeAttribute("Color", track->color().name());
        xml.writeAttribute("Priority", QString::number(track->sortKey()));
        for (const EventTrack::Event& event : track->events()) {
            xml.writeStartElement("Event");
            xml.writeAttribute("Type", QString::number(int(event.type)));
            xml.writeAttribute("Time", QString::number(event.time));
            if (event.userData)
                xml.writeTextElement("EventData", event.userData->text());
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
}

void saveStandard(benchmark::State& state, bool withData) {
    const MillionEvents events(withData);
    for (auto _ : state)
        savePlain(events.view, filePath("plain.xml"));
    events.view.save(filePath("ours.xml"), EventGraphWriter::IncludeUserData);
    QFile ours(filePath("ours.xml")), plain(filePath("plain.xml"));
    ours.open(QIODevice::ReadOnly);
    plain.open(QIODevice::ReadOnly);
    if (ours.readAll() != plain.readAll())
        state.SkipWithError("the documents differ");
}

void loadOurs(benchmark::State& state, bool withData) {
    savePlain(MillionEvents(withData).view, filePath("load.xml"));
    for (auto _ : state) {
        EventGraphView view;
        view.load(filePath("load.xml"));
        if (view.tracks().first()->events().size() != MillionEvents::count)
            state.SkipWithError("not loaded");
    }
}

void loadPlain(benchmark::State& state, bool withData) {
    savePlain(MillionEvents(withData).view, filePath("load.xml"));
    for (auto _ : state) {
        std::deque<EventTrack::Event> events;
        QFile file(filePath("load.xml"));
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader xml(&file);
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement())
                continue;
            if (xml.name() == "Event") {
                const auto attributes = xml.attributes();
                events.push_back({attributes.value("Time").toInt(),
                                  Type(attributes.value("Type").toInt()),
                                  0.0f,
                                  {}});
            } else if (xml.name() == "EventData") {
                events.back().userData = new EventUserDataString(xml.readElementText());
            }
        }
        if (events.size() != MillionEvents::count)
            state.SkipWithError("not loaded");
    }
}

// 500,000 activities in a window 1920 pixels wide, all of them in sight.
struct ManySpans {
    ManySpans()
        : events(true) {
        for (int i = 0; i < 200 && events.view.sizeHint().width() > 1920; ++i)
            events.view.zoomAbout(0, -1);
        events.view.resize(1920, 500);
        image = QImage(1920, 500, QImage::Format_ARGB32_Premultiplied);
        events.view.render(&image);
        for (const EventTrack::Event& event : events.track.events())
            plain.push_back({event.time - events.view.startTime(), event.type, event.value});
    }

    MillionEvents events;
    QImage image;
    std::vector<PlainEvent> plain;
};

void repaintOurs(benchmark::State& state) {
    ManySpans many;
    for (auto _ : state)
        many.events.view.render(&many.image);
}

void repaintEach(benchmark::State& state) {
    ManySpans many;
    const TimeScale scale{many.events.view.horizontalScale()};
    for (auto _ : state) {
        QPainter painter(&many.image);
        painter.fillRect(many.image.rect(), Qt::white);
        int start = 0;
        for (const auto& event : many.plain) {
            const int x = scale.x(event.time);
            if (event.type == Type::Start)
                start = x;
            else
                painter.fillRect(start, 3, std::max(x - start, 1), 18, Qt::red);
        }
    }
}

// At points all over the width.
int nextPoint(int& x) {
    x = (x + 613) % 1600;
    return 200 + x;
}

void hitOurs(benchmark::State& state) {
    const ManySpans many;
    int x = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(many.events.view.eventTextAt({nextPoint(x), 10}));
}

void hitLinear(benchmark::State& state) {
    const ManySpans many;
    int x = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(hitTimelineLinear(
            many.plain, {{many.events.view.horizontalScale()}, nextPoint(x), 1920, {}}));
}

#if defined(KXUI_BENCH_LTTNG)
// A session daemon with a session that overwrites its buffers, so that nothing is written to disk.
class LttngSession {
public:
    LttngSession() {
        if (QStandardPaths::findExecutable("lttng-sessiond").isEmpty())
            return;
        m_ownDaemon = run("lttng-sessiond", {"--daemonize", "--no-kernel", "--pidfile", pidFile()});
        m_session = run("lttng", {"create", "kxui-bench", "--snapshot"}) &&
                    run("lttng", {"enable-event", "-s", "kxui-bench", "-u", "kxui_bench:*"}) &&
                    run("lttng", {"start", "kxui-bench"});
        for (int i = 0; i < 100 && m_session && !lttngEnabled(); ++i)
            QThread::msleep(20);
    }

    ~LttngSession() {
        if (m_session)
            run("lttng", {"destroy", "kxui-bench"});
        QFile file(pidFile());
        if (m_ownDaemon && file.open(QIODevice::ReadOnly))
            run("kill", {QString::fromLatin1(file.readAll()).trimmed()});
    }

private:
    QString pidFile() const { return m_dir.filePath("pid"); }

    static bool run(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(program, arguments);
        return process.waitForFinished(10'000) && process.exitCode() == 0;
    }

    QTemporaryDir m_dir;
    bool m_ownDaemon = false;
    bool m_session = false;
};

void recordLttng(benchmark::State& state) {
    static std::unique_ptr<LttngSession> session;
    if (!session) {
        session = std::make_unique<LttngSession>();
        qAddPostRoutine([] { session.reset(); }); // while processes can still be run
    }
    if (!lttngEnabled()) {
        state.SkipWithError("no lttng session daemon");
        return;
    }
    for (auto _ : state)
        lttngPair(nullptr);
}
#endif

} // namespace

void registerBenchmarks() {
    // The clock that costs microseconds when the zone is looked up at each call.
    qunsetenv("TZ");

    Bench::add("start/end pair", "ours", recordPairs);
    Bench::add("start/end pair", "its two locks, twice", takeLocks);
    Bench::targetRatio("start/end pair", "its two locks, twice", 1 / 2.0);
#if defined(KXUI_BENCH_LTTNG)
    Bench::add("start/end pair", "lttng-ust", recordLttng);
    Bench::targetRatio("start/end pair", "lttng-ust", 2);
#endif
    Bench::add("start/end pair, paused", "ours", recordPaused);
    Bench::add("start/end pair, paused", "its two locks, twice", takeLocks);
    Bench::targetRatio("start/end pair, paused", "its two locks, twice", 1 / 1.5);
    Bench::add("start/end pair, disabled", "ours", recordDisabled);
    Bench::target("start/end pair, disabled", 0.002);
    Bench::add("memory per event (ns stands for bytes)", "ours", memoryPerEvent);
    Bench::add("memory per event (ns stands for bytes)", "six words", [](benchmark::State& state) {
        for (auto _ : state)
            report(state, 48);
    });
    Bench::targetRatio("memory per event (ns stands for bytes)", "six words", 1);
    Bench::add("start() over 1,000,000 events: longest wait for the locks", "ours",
               startOverEvents);
    Bench::target("start() over 1,000,000 events: longest wait for the locks", 200);

    for (const bool withData : {false, true}) {
        using std::placeholders::_1;
        const std::string events = withData ? " 1,000,000 events with data" : " 1,000,000 events";
        Bench::add("save" + events, "ours", std::bind(saveOurs, _1, withData));
        Bench::add("save" + events, "QXmlStreamWriter loop", std::bind(saveStandard, _1, withData));
        Bench::targetRatio("save" + events, "QXmlStreamWriter loop", 1 / 0.7);
        Bench::add("load" + events, "ours", std::bind(loadOurs, _1, withData));
        Bench::add("load" + events, "QXmlStreamReader loop", std::bind(loadPlain, _1, withData));
        Bench::targetRatio("load" + events, "QXmlStreamReader loop", 1 / 0.9);
    }
    Bench::add("repaint 500,000 spans", "ours", repaintOurs);
    Bench::target("repaint 500,000 spans", 8e3);
    Bench::add("repaint 500,000 spans", "one fillRect each", repaintEach);
    Bench::add("hit test in 500,000 spans, with its text", "ours", hitOurs);
    Bench::target("hit test in 500,000 spans, with its text", 10);
    Bench::add("hit test in 500,000 spans, with its text", "one after the other, no text",
               hitLinear);
}
