#include "TestImages.h"

#include <support/TestRegistry.h>

#include "app/HelpDesk.h"
#include "app/MainWindow.h"
#include "panels/ViewerPanel.h"
#include "play/Session.h"

#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <QAction>

#include <atomic>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
using namespace Kestrel::UI;

namespace {

/** A millisecond passes with every look. */
class CountingTimer : public Kestrel::UI::IEventGraphTimer {
public:
    int time() override { return ++m_now; }

private:
    std::atomic<int> m_now{0};
};

/** What a view holds, by the beginning of the tracks' names. */
class Captured {
public:
    explicit Captured(const EventGraphView& view)
        : m_view(view) {}

    std::vector<EventTrack::Event> events(const QString& name) const {
        std::vector<EventTrack::Event> all;
        const Kestrel::UI::EventGraphSnapshot held = m_view.snapshot();
        for (const auto& track : held.tracks) {
            if (track.name.startsWith(name))
                all.insert(all.end(), track.events.begin(), track.events.end());
        }
        return all;
    }

    QStringList ended(const QString& name) const {
        QStringList texts;
        for (const EventTrack::Event& event : events(name)) {
            if (event.type == EventTrack::Type::End)
                texts << event.userData->text();
        }
        return texts;
    }

    /** Whether every activity of these tracks has a start and an end after it. */
    bool isPaired(const QString& name) const {
        const Kestrel::UI::EventGraphSnapshot held = m_view.snapshot();
        for (const auto& track : held.tracks) {
            const EventTrack::EventList& all = track.events;
            for (std::size_t i = 0; track.name.startsWith(name) && i < all.size(); i += 2) {
                if (i + 1 == all.size() || all[i].type != EventTrack::Type::Start ||
                    all[i + 1].type != EventTrack::Type::End || all[i + 1].time <= all[i].time)
                    return false;
            }
        }
        return true;
    }

private:
    const EventGraphView& m_view;
};

constexpr float unlimited = EventGraphView::unlimitedDuration;

} // namespace

/** The program's own tracks in the profiler. */
class ProfilingTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    Sequence m_shot;

private slots:
    /** Frames 1 to 8; 5 is empty. */
    void initTestCase() {
        m_shot = Kestrel::Test::writeSequence(m_folder.path(), 8, {});
        QCOMPARE(m_shot.members().size(), std::size_t(8));
        QVERIFY(Kestrel::Test::truncate(m_folder.filePath("s.0005.exr"), 0));
    }

    void playback() {
        CountingTimer timer;
        EventGraphView view(nullptr, &timer);
        const Captured captured(view);
        Session session(TimeBase(100, false), std::size_t(1) << 20);
        ViewerPanel viewer(&session);
        session.profiling()->addTo(&view);
        view.start(unlimited, EventGraphMode::Forwards);
        session.open(m_shot);
        QTRY_VERIFY(session.isSettled());
        viewer.resize(300, 200);
        QVERIFY(!viewer.grab().isNull());
        session.player()->play();
        QTRY_VERIFY(captured.ended("Frame shown").size() >= 3);
        QThread::msleep(60); // five frames go by meanwhile
        QTRY_VERIFY(!captured.ended("Frames dropped").isEmpty());
        // The tracks have their rows already: the capture goes on.
        session.profiling()->addTo(&view);
        session.player()->stop();
        view.stop();

        QStringList decoded = captured.ended("Decode");
        decoded.sort();
        QCOMPARE(decoded.size(), 8);
        QVERIFY2(decoded.at(0).startsWith("Frame 1, "), qPrintable(decoded.at(0)));
        QVERIFY2(decoded.at(4).contains("empty"), qPrintable(decoded.at(4)));
        for (const char* track :
             {"Decode", "Cache fill", "Viewer paint", "Frame shown", "Frames dropped"})
            QVERIFY2(captured.isPaired(track), track);
        QCOMPARE(captured.ended("Cache fill").size(), 8);
        QVERIFY(captured.ended("Viewer paint").contains("Frame 1"));
        QVERIFY(captured.ended("Frames dropped").first().contains(" before frame "));
        const std::vector<EventTrack::Event> memory = captured.events("Cache (MiB)");
        QCOMPARE(memory.size(), std::size_t(9));
        QCOMPARE(memory.front().value, 0.0F);
        QCOMPARE(memory.back().value, float(double(session.cache().bytes()) / (1024.0 * 1024.0)));
        for (const EventTrack::Event& sample : captured.events("Playback"))
            QVERIFY(sample.value > 0.0F);
    }

    void evictions() {
        CountingTimer timer;
        EventGraphView view(nullptr, &timer);
        const Captured captured(view);
        Session session(TimeBase(24, false), 6000); // two frames
        session.profiling()->addTo(&view);
        view.start(unlimited, EventGraphMode::Forwards);
        session.open(m_shot, 1);
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        session.model()->setCurrentTime(8);
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        QVERIFY(captured.ended("Cache eviction").contains("Frame 1"));
        QVERIFY(captured.isPaired("Cache eviction"));
    }

    // Sequences, sessions and views come and go amid a capture and amid decodes.
    void lifetimes() {
        CountingTimer timer;
        auto view = std::make_unique<EventGraphView>(nullptr, &timer);
        view->start(1.0F, EventGraphMode::History);
        Session stays(TimeBase(24, false), std::size_t(1) << 20);
        stays.profiling()->addTo(view.get());
        const int rows = int(view->tracks().size());
        for (int i = 0; i < 20; ++i) {
            Session goes(TimeBase(24, false), std::size_t(1) << 20);
            goes.profiling()->addTo(view.get());
            QCOMPARE(view->tracks().size(), 2 * rows);
            goes.open(m_shot);
            stays.open(m_shot);
            goes.open(m_shot, 4);
            if (i % 2 == 0)
                QCoreApplication::processEvents();
        }
        QCOMPARE(view->tracks().size(), rows);
        QTRY_VERIFY(!Captured(*view).ended("Decode").isEmpty());
        stays.open(m_shot);
        view.reset();
        QTRY_VERIFY(stays.isSettled());
    }

    void menu() {
        QPointer<EventGraph> profiler;
        {
            MainWindow window(TimeBase(24, false), std::size_t(1) << 20, Theme::Dark);
            QAction* open = nullptr;
            for (QAction* action : window.findChildren<QAction*>()) {
                if (action->text() == "&Profiler")
                    open = action;
            }
            QVERIFY(open);
            open->trigger();
            open->trigger();
            profiler = EventGraph::instance();
            QVERIFY(profiler->isVisible());
            QVERIFY(profiler->isWindow());
            QVERIFY(profiler->view()->tracks().size() >= 9);
            QCOMPARE(HelpDesk::nodeOf(profiler->view()), std::string("profiler.html"));
            profiler->start(unlimited, EventGraphMode::Forwards);
        }
        QCOMPARE(profiler->view()->tracks().size(), 0);
        profiler->stop();
        profiler->close();
    }
};

KXUI_TEST(ProfilingTest);
#include "ProfilingTest.moc"
