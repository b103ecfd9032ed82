#include "FakeTimer.h"

#include <KxUI/eventgraph/EventGraphGeometry_p.h>
#include <KxUI/eventgraph/EventGraphPainting_p.h>
#include <KxUI/eventgraph/EventGraphScene_p.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventHitTest_p.h>
#include <KxUI/eventgraph/EventStatistics_p.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/SelectionDrag_p.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

using namespace Kestrel::UI;
using namespace Kestrel::Test;
using Type = EventTrack::Type;
using TrackType = EventTrack::TrackType;
using Events = std::vector<PlainEvent>;

namespace {

constexpr int largest = std::numeric_limits<int>::max();

TrackInfo info(TrackType type, int height = 40) {
    TrackInfo track;
    track.type = type;
    track.minValue = -1;
    track.maxValue = 1;
    track.graphHeight = height;
    return track;
}

TrackIndex timeline(const Events& events) {
    return makeIndex(info(TrackType::Timeline), 0, events);
}

// "A 10-20" for an activity, "I 7" for an instant.
QString described(const std::optional<EventHit>& hit) {
    if (!hit)
        return "none";
    const QString rect = QString(" x %1+%2").arg(hit->rect.x()).arg(hit->rect.width());
    return (hit->kind == EventHit::Kind::Activity ? QString("A %1-%2").arg(hit->time).arg(hit->end)
                                                  : QString("I %1").arg(hit->time)) +
           rect;
}

Events randomTimeline(std::mt19937& random, int count, bool sorted) {
    const auto upTo = [&](int n) { return int(random() % unsigned(n)); };
    const int longest = 1 << upTo(8);
    Events events;
    int time = upTo(50);
    bool open = upTo(2);
    for (int i = 0; i < count; ++i) {
        time += upTo(4) == 0 ? 0 : upTo(longest);
        const int at = sorted ? time : time - upTo(200);
        if (upTo(5) == 0) {
            events.push_back({at, Type::Sample, 0});
        } else {
            events.push_back({at, open ? Type::End : Type::Start, 0});
            open = !open && upTo(30) != 0; // now and then a start without an end
        }
    }
    return events;
}

float randomScale(std::mt19937& random) {
    return std::exp2(float(int(random() % 40u)) / 4.0f - 7.0f);
}

} // namespace

class Looking : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void zoomLadder() {
        const float root = std::exp2(0.25f);
        QCOMPARE(zoomed(1.0f, 120, 1000), root);
        QCOMPARE(zoomed(1.0f, -120, 1000), 1 / root);
        QCOMPARE(zoomed(2.0f, 360, 1000), 2 * root * root * root);
        QCOMPARE(zoomed(1.0f, 119, 1000), 1.0f); // part of a notch
        QCOMPARE(zoomed(1.0f, -239, 1000), 1 / root);
        QCOMPARE(zoomed(1.05f, 120, 1000), root);           // onto the ladder
        QCOMPARE(zoomed(std::exp2(0.125f), 0, 1000), root); // half away from zero
        QCOMPARE(zoomed(16384.0f, 120, 1000), 16384.0f);    // the next is too wide for a widget
        QCOMPARE(zoomed(1.0f, 12000, 86'400'000), std::exp2(-2.5f)); // a day
        QCOMPARE(zoomed(1.0f, std::numeric_limits<int>::min(), 1000), std::exp2(-30.0f));
    }

    void positions() {
        const TimeScale half{0.5f};
        QCOMPARE(half.x(3), 201);
        QCOMPARE(half.x(-3), 199);
        QVERIFY(TimeScale{1e30f}.x(largest) > largestExtent);
        QCOMPARE(viewSize(100, 1.0f, 0), QSize(1000, 500));
        QCOMPARE(viewSize(1001, 0.5f, 700), QSize(700, 700));
        QCOMPARE(viewSize(largest, 1e10f, qint64(1) << 40), QSize(largestExtent, largestExtent));
        QCOMPARE(viewSize(-5, 1.0f, 0), QSize(1000, 500));
        QCOMPARE(graphY(0.5f, 0, 1, 40, 100), 80);
        QCOMPARE(graphY(0.99f, 0, 1, 40, 100), 61);
        QCOMPARE(graphY(1e38f, 0, 1e-38f, 40, 100), 100 - largestExtent);
        QCOMPARE(graphY(std::nanf(""), 0, 1, 40, 100), 100);
        QCOMPARE(tickStep(1.0f, 90), 100.0);
        QCOMPARE(tickStep(100.0f, 90), 1.0);

        // The time under the cursor stays there, wherever the view was scrolled to.
        QCOMPARE(scrollAfterZoom(600, 0, 1.0f, 2.0f, 5000, 1000), 400);
        QCOMPARE(scrollAfterZoom(1600, 1000, 1.0f, 2.0f, 5000, 1000), 2400);
        QCOMPARE(scrollAfterZoom(600, 0, 2.0f, 1.0f, 5000, 1000), 0);
        QCOMPARE(scrollAfterZoom(4900, 4000, 1.0f, 2.0f, 5000, 1000), 4000);
    }

    void hitTable() {
        const auto hit = [](const Events& events, int x, EventHitTestMode mode) {
            return described(hitTimeline(timeline(events), {{1.0f}, x, 1000, mode}));
        };
        const Events two{
            {10, Type::Start, 0}, {20, Type::End, 0}, {30, Type::Start, 0}, {30, Type::End, 0}};
        const Events instants{
            {5, Type::Sample, 0}, {6, Type::Start, 0}, {7, Type::Sample, 0}, {9, Type::End, 0}};
        const Events beyondTheView{{2000, Type::Start, 0}, {2100, Type::End, 0}};
        const QString none = "none", first = "A 10-20 x 210+10", second = "A 30-30 x 230+1",
                      instant = "I 5 x 204+3", openAtStart = "A 0-4 x 200+4";
        const struct {
            Events events;
            int x;
            QString direct, next;
        } rows[] = {
            {two, 209, none, first},
            {two, 210, first, first},
            {two, 219, first, first},
            {two, 220, none, second},
            {two, 230, second, second}, // without width
            {two, 231, none, none},
            {instants, 203, none, "A 6-9 x 206+3"},
            {instants, 204, instant, instant},             // a pixel before it
            {instants, 206, instant, instant},             // the oldest first
            {instants, 208, "I 7 x 206+3", "I 7 x 206+3"}, // within an activity
            {{{4, Type::End, 0}}, 202, openAtStart, openAtStart},
            {{{4, Type::Start, 0}}, 206, none, none}, // still open
            {beyondTheView, 300, none, none},
        };
        for (const auto& row : rows) {
            QCOMPARE(hit(row.events, row.x, EventHitTestMode::DirectHitOnly), row.direct);
            QCOMPARE(hit(row.events, row.x, EventHitTestMode::AllowNext), row.next);
        }
    }

    // What the index finds and covers is what a walk through all events does.
    void indexEqualsWalk_data() { Kestrel::Test::addSeeds(60); }
    void indexEqualsWalk() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const Events events = randomTimeline(random, 400, seed % 6 != 0);
        const TrackIndex index = timeline(events);
        const TimeScale scale{randomScale(random)};
        for (int i = 0; i < 400; ++i) {
            const TimelineProbe probe{scale, 190 + int(random() % 1000u), 900,
                                      EventHitTestMode(random() % 2u)};
            QCOMPARE(described(hitTimeline(index, probe)),
                     described(hitTimelineLinear(events, probe)));
        }

        const int left = 200 + int(random() % 100u), right = left + 700;
        std::map<int, bool> painted, covered;
        int start = 0;
        for (const PlainEvent& event : events) {
            if (event.type == Type::Start)
                start = event.time;
            if (event.type != Type::End)
                continue;
            const int from = scale.x(start), to = std::max(scale.x(event.time), from + 1);
            for (int x = std::max(from, left); x < std::min(to, right); ++x)
                painted[x] = x == from && to - from >= narrowestWithEdge;
        }
        int last = left;
        for (const ColumnRun& run : spanColumns(index, scale, left, right)) {
            QVERIFY(run.from >= last && run.from < run.to && run.to <= right);
            last = run.to;
            for (int x = run.from; x < run.to; ++x)
                covered[x] = run.edge;
        }
        if (index.sorted)
            QCOMPARE(covered, painted);
    }

    void graphEqualsWalk_data() { Kestrel::Test::addSeeds(60); }
    void graphEqualsWalk() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        Events events;
        int time = int(random() % 100u);
        for (int i = 0; i < 20'000; ++i) {
            time += int(random() % 4u) / 2;
            events.push_back({time, Type::Sample,
                              std::sin(float(i) / 100.0f) * (random() % 200u ? 1.0f : 3.0f)});
        }
        const TrackIndex index = makeIndex(info(TrackType::Value), 0, events);
        const TimeScale scale{randomScale(random)};
        const int bottom = 100, top = bottom - 40;
        for (int i = 0; i < 40; ++i) {
            const QPoint point(200 + int(random() % 600u), top - 5 + int(random() % 50u));
            const auto hit = hitGraph(index, scale, point, bottom);
            const auto expected = std::find_if(events.begin(), events.end(), [&](const auto& each) {
                return std::abs(scale.x(each.time) - point.x()) <= 2 &&
                       std::abs(std::clamp(graphY(each.value, -1, 1, 40, bottom), top, bottom) -
                                point.y()) <= 2;
            });
            QCOMPARE(hit.has_value(), expected != events.end());
            if (hit)
                QCOMPARE(int(hit->event), int(expected - events.begin()));
        }

        const int left = 250, right = 800;
        std::vector<std::pair<int, int>> reach(std::size_t(right - left), {1000, -1000});
        const auto include = [&](int from, int to, int y) {
            y = std::min(std::max(y, top), bottom - 1);
            for (int x = std::max(from, left); x < std::min(to, right); ++x) {
                auto& [high, low] = reach[std::size_t(x - left)];
                high = std::min(high, y);
                low = std::max(low, y);
            }
        };
        for (std::size_t i = 0; i < events.size(); ++i) {
            const int y = graphY(events[i].value, -1, 1, 40, bottom);
            const int next = i + 1 < events.size() ? scale.x(events[i + 1].time) : right;
            include(scale.x(events[i].time), next + 1, y);
        }
        for (const GraphRun& run : graphColumns(index, scale, left, right, bottom)) {
            for (int x = run.from; x < run.to; ++x) {
                QCOMPARE(reach[std::size_t(x - left)], std::make_pair(run.top, run.bottom));
                reach[std::size_t(x - left)] = {1000, -1000};
            }
        }
        for (const auto& column : reach)
            QCOMPARE(column, std::make_pair(1000, -1000));
    }

    // Cost that grows with the square of the tracks would not end.
    void manyRows() {
        std::vector<TrackInfo> tracks;
        for (quint64 i = 0; i < 100'000; ++i) {
            tracks.push_back(info(TrackType::Timeline));
            tracks.back().content = i + 1;
        }
        Scene scene;
        scene.setTracks(tracks, false);
        for (const SceneRow& row : scene.rows())
            scene.index(row);
        scene.setTracks(tracks, false);
        QCOMPARE(scene.height(), qint64(100'000) * timelineRowHeight);
        QCOMPARE(scene.rowAt(2'399'999), &scene.rows().back());
    }

    // The moves of a selection's drag: p press, m move, r release, - move without the button.
    void selectionDrags_data() {
        const Columns<QString, QString> row("moves", "commands");
        row("click", "p100 r", "clear");
        row("too short", "p100 m109 r", "clear");
        row("drag", "p100 m110 m90 r m300", "100-110 100-90");
        row("slow drag", "p100 m105 m110 m100 r", "100-110 100-100");
        row("moves without a press", "m100 m200 r", "");
        row("lost release", "p100 m150 -200 m300 r", "100-150");
        row("lost release of a click", "p100 -101 r", "");
        row("again", "p100 m120 r p7 m27 r", "100-120 7-27");
    }
    void selectionDrags() {
        QFETCH(QString, moves);
        SelectionDrag drag(10);
        QStringList commands;
        for (const QString& move : moves.split(' ')) {
            const int x = move.mid(1).toInt();
            SelectionDrag::Command command;
            if (move[0] == 'p')
                drag.press(x);
            else
                command = move[0] == 'r' ? drag.release() : drag.move(x, move[0] == 'm');
            if (command.what == SelectionDrag::Command::Select)
                commands << QString("%1-%2").arg(command.from).arg(command.to);
            else if (command.what == SelectionDrag::Command::Clear)
                commands << "clear";
        }
        QTEST(commands.join(' '), "commands");
    }

    void statistics() {
        std::vector<double> values;
        for (int i = 200; i > 0; --i)
            values.push_back(i);
        const EventStatistics all = statisticsOf(values);
        QCOMPARE(all.count, std::size_t(200));
        QCOMPARE(QList<double>({all.minimum, all.mean, all.maximum, all.median, all.percentile95,
                                all.percentile99}),
                 QList<double>({1, 100.5, 200, 100, 190, 198}));
        QCOMPARE(statisticsOf(std::vector<double>{7}).percentile99, 7.0);
        QCOMPARE(statisticsOf(std::vector<double>{}).count, std::size_t(0));
        const TrackIndex index = timeline({{5, Type::Start, 0}, {9, Type::End, 0}});
        QCOMPARE(statisticsOf(index).maximum, 4.0);
    }

    void exportedTrace() {
        FakeTimer timer;
        timer.now = 1000;
        EventGraphView view(nullptr, &timer);
        EventTrack time("Decode \"a\"", Qt::red, 1, TrackType::Timeline, 0, 1, 9, 900, 20, nullptr);
        EventTrack value("Cache", Qt::red, 2, TrackType::Value, 0, 1, 9, 900, 20, nullptr);
        view.addTrack(&time);
        view.addTrack(&value);
        view.start(unlimited, EventGraphMode::Forwards);
        QStringList expected;
        std::mt19937 random(1);
        for (int i = 0; i < 100; ++i) {
            const int from = timer.now += int(random() % 9u);
            const QString text = QString("f\\%1\n\u0001é🎬").arg(i);
            time.addEvent(Type::Start, nullptr);
            timer.now += int(random() % 9u);
            time.addEvent(Type::End, i % 3 ? new EventUserDataString(text) : nullptr);
            expected << QString("X %1 %2 %3")
                            .arg(from - 1000)
                            .arg(timer.now - from)
                            .arg(i % 3 ? text : QString());
            time.addEvent(Type::Sample, new EventUserDataString(text));
            expected << QString("i %1 0 %2").arg(timer.now - 1000).arg(text);
        }
        for (const float sample : {0.25f, std::nanf(""), -3e30f, 1.0f / 0.0f, 7.0f}) {
            value.addEvent(sample);
            if (std::isfinite(sample))
                expected << QString("C %1 %2").arg(timer.now - 1000).arg(double(sample));
        }
        view.stop();

        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(writeEventTrace(view.snapshot(), &buffer));
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(buffer.data(), &error);
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
        QStringList read, names;
        for (const QJsonValue& each : document.object()["traceEvents"].toArray()) {
            const QJsonObject event = each.toObject();
            const QString phase = event["ph"].toString();
            const QJsonObject arguments = event["args"].toObject();
            const QString at = QString::number(event["ts"].toDouble() / 1000);
            if (phase == "M")
                names << arguments["name"].toString();
            else if (phase == "C")
                read << QString("C %1 %2").arg(at).arg(arguments["value"].toDouble());
            else
                read << QString("%1 %2 %3 %4")
                            .arg(phase, at)
                            .arg(event["dur"].toDouble() / 1000)
                            .arg(arguments["text"].toString());
        }
        QCOMPARE(read, expected);
        QVERIFY(names.contains("Decode \"a\""));
    }
};

KXUI_TEST(Looking);
#include "Looking.moc"
