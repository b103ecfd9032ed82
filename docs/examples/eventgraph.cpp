// Two threads record into the profiler; its window shows the capture.

#include <KxUI/eventgraph/EventAdder.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventTrack.h>
#include <KxUI/eventgraph/EventUserDataInt.h>

#include <QApplication>
#include <QThread>

#include <memory>
#include <thread>

using namespace Kestrel::UI;

namespace {

using Options = EventTrack::Options;
EventTrack decodes(Options::timeline("Decode", QColor(0x40, 0x90, 0xd0)).at(10));
EventTrack paints(Options::timeline("Paint", QColor(0xd0, 0x80, 0x30)).at(20));
EventTrack
    cached(Options::graph("Frames in the cache", QColor(0x50, 0xa0, 0x50), 0, 20).at(30).high(60));

void decode(int frame) {
    const EventAdder activity(&decodes, new EventUserDataInt(frame), true);
    QThread::msleep(4 + unsigned(frame % 3) * 5);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    EventGraph* graph = EventGraph::instance();
    for (EventTrack* track : {&decodes, &paints, &cached})
        graph->addTrack(track);
    graph->start(EventGraphView::unlimitedDuration, EventGraphMode::Forwards);

    std::thread worker([] {
        for (int frame = 0; frame < 20; ++frame) {
            decode(frame);
            cached.addEvent(float(frame + 1));
        }
    });
    for (int frame = 0; frame < 12; ++frame) {
        QThread::msleep(10);
        const EventAdder activity(&paints, {}, true);
        QThread::msleep(3);
    }
    worker.join();
    graph->stop();

    graph->resize(960, 330);
    graph->show();
    graph->view()->zoomToFit();
    return QApplication::exec();
}
