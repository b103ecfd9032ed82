#include <support/Bench.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderModel.h>

#include <QCoreApplication>
#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>

namespace {

using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using Kestrel::UI::TimeFormatter;
using Kestrel::UI::TimeSlider;
using Kestrel::UI::TimeSliderModel;
namespace Bench = Kestrel::Bench;

constexpr Time Frames = 100000;
constexpr int Height = 37;

/** A slider over 100,000 frames that counts its paints. */
class CountingSlider : public TimeSlider {
public:
    CountingSlider(TimeSliderModel* model, TimeFormatter* formatter)
        : TimeSlider(model, formatter, 1, MainTransport) {}

    int renders = 0;
    int paints = 0;

protected:
    void paintSlider(QPainter& painter) override {
        ++renders;
        TimeSlider::paintSlider(painter);
    }
    void paintEvent(QPaintEvent* event) override {
        ++paints;
        TimeSlider::paintEvent(event);
    }
};

struct Stage {
    explicit Stage(int width) {
        model.setTimes(0, InvalidTime, InvalidTime, Frames - 1, 100);
        slider.zoomToFit();
        slider.resize(width, Height);
        slider.show();
        QCoreApplication::processEvents();
    }
    TimeFormatter formatter;
    TimeSliderModel model;
    CountingSlider slider{&model, &formatter};
};

void stepPlayhead(benchmark::State& state, int width, bool whole) {
    Stage stage(width);
    const Time stepFrames = Frames / width;
    const int renders = stage.slider.renders;
    int paints = stage.slider.paints;
    Time time = 100;
    for (auto _ : state) {
        time = time + stepFrames < Frames ? time + stepFrames : 100;
        stage.model.setCurrentTime(time);
        if (whole)
            stage.slider.update();
        QCoreApplication::sendPostedEvents();
        ++paints;
    }
    if (stage.slider.renders != renders)
        state.SkipWithError("the static image was rendered again");
    if (stage.slider.paints != paints)
        state.SkipWithError("not one paint a step");
}

/** The ruler as it is written when speed is no concern: a line a tick, a layout a label. */
class PlainRuler : public QWidget {
public:
    PlainRuler() { setAttribute(Qt::WA_OpaquePaintEvent); }

protected:
    void paintEvent(QPaintEvent*) override {
        QImage image(size(), QImage::Format_RGB32);
        QPainter painter(&image);
        QFont small = font();
        small.setPixelSize(9);
        painter.setFont(small);
        const QColor dark = palette().color(QPalette::Dark);
        painter.fillRect(rect(), palette().color(QPalette::Window));
        painter.fillRect(rect().adjusted(5, 5, -5, 0), dark.lighter(136));
        painter.fillRect(rect().adjusted(5, 5, -5, 0), dark.lighter(180));
        painter.setPen(palette().color(QPalette::WindowText));
        for (Time time = 0; time < Frames; time += 100) {
            const int x = 5 + int((width() - 10) * (double(time) / Frames));
            const bool isMajor = time % 5000 == 0;
            painter.drawLine(x, isMajor ? 15 : 17, x, 21);
            if (!isMajor)
                continue;
            const QString text = m_formatter.formatTime(time);
            const int textWidth = painter.fontMetrics().horizontalAdvance(text);
            painter.drawText(qBound(0, x - textWidth / 2, width() - textWidth), height() - 1, text);
        }
        painter.end();
        QPainter(this).drawImage(0, 0, image);
    }

private:
    TimeFormatter m_formatter;
};

void renderOurs(benchmark::State& state) {
    Stage stage(3840);
    const int renders = stage.slider.renders;
    int redraws = 0;
    for (auto _ : state) {
        stage.slider.redraw();
        QCoreApplication::sendPostedEvents();
        ++redraws;
    }
    if (stage.slider.renders != renders + redraws)
        state.SkipWithError("not one rendering a redraw");
}

void renderPlain(benchmark::State& state) {
    PlainRuler ruler;
    ruler.resize(3840, Height);
    ruler.show();
    QCoreApplication::processEvents();
    for (auto _ : state) {
        ruler.update();
        QCoreApplication::sendPostedEvents();
    }
}

void cacheFrames(benchmark::State& state, bool turnEach) {
    Stage stage(3840);
    for (auto _ : state) {
        state.PauseTiming();
        stage.slider.setCachedFrames({}, 0);
        QCoreApplication::processEvents();
        const int paints = stage.slider.paints;
        state.ResumeTiming();
        for (Time frame = 0; frame < Frames; ++frame) {
            stage.slider.displayFrameAsCached(frame, 0);
            if (turnEach && frame % 1000 == 0)
                QCoreApplication::sendPostedEvents();
        }
        QCoreApplication::sendPostedEvents();
        if (stage.slider.paints - paints > (turnEach ? 101 : 1))
            state.SkipWithError("more than one paint a turn of the event loop");
    }
    state.SetItemsProcessed(state.iterations() * Frames);
}

} // namespace

void registerBenchmarks() {
    const char* step = "playhead step, 3840 x 37";
    Bench::add(step, "ours", [](auto& state) { stepPlayhead(state, 3840, false); });
    Bench::add(step, "ours at 512 wide", [](auto& state) { stepPlayhead(state, 512, false); });
    Bench::add(step, "the whole strip repainted",
               [](auto& state) { stepPlayhead(state, 3840, true); });
    Bench::target(step, 10);
    Bench::targetRatio(step, "ours at 512 wide", 1 / 1.3);

    const char* render = "static re-render and paint, 3840 px, 100,000 frames";
    Bench::add(render, "ours", renderOurs);
    Bench::add(render, "drawLine and drawText", renderPlain);
    Bench::target(render, 80);

    const char* cache = "100,000 displayFrameAsCached in order, each";
    Bench::add(cache, "ours", [](auto& state) { cacheFrames(state, false); });
    Bench::add(cache, "with 100 turns of the event loop",
               [](auto& state) { cacheFrames(state, true); });
    Bench::target(cache, 0.1);
}
