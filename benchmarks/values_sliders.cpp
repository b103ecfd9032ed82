#include <KxUI/values/TinySlider.h>

#include <support/Bench.h>

#include <QApplication>
#include <QMouseEvent>
#include <QSlider>
#include <QStyle>
#include <QStyleFactory>

#include <memory>

using Kestrel::UI::LinearSlider;
using Kestrel::UI::TinySlider;
namespace Bench = Kestrel::Bench;

/** Registers its cases along with those of the number fields. */
void registerSliderBenchmarks();

namespace {

constexpr int Length = 300;

/** The style of both, whatever the desktop is. */
QStyle* fusion() {
    static const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("Fusion")));
    return style.get();
}

void send(QWidget& slider, QEvent::Type type, int x) {
    const bool pressed = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, QPointF(x, slider.height() / 3.0), Qt::LeftButton,
                      pressed ? Qt::LeftButton : Qt::NoButton,
                      type == QEvent::MouseMove ? Qt::AltModifier : Qt::NoModifier);
    QCoreApplication::sendEvent(&slider, &event);
}

// Alt keeps ours from resting at snap points, which would spare it the painting.
// A drag back and forth over the middle of the groove, a pixel at a time: each with what it paints.
void drag(benchmark::State& state, std::unique_ptr<QWidget> slider) {
    slider->setStyle(fusion());
    slider->resize(Length, slider->sizeHint().height());
    slider->show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    send(*slider, QEvent::MouseButtonPress, Length / 2);
    int x = 0;
    for (auto _ : state) {
        x = (x + 1) % 200;
        send(*slider, QEvent::MouseMove, Length / 2 - 50 + (x < 100 ? x : 200 - x));
        QCoreApplication::processEvents();
    }
    send(*slider, QEvent::MouseButtonRelease, Length / 2);
}

std::unique_ptr<QWidget> ours(LinearSlider::TickMode ticks) {
    auto slider = std::make_unique<LinearSlider>();
    slider->setTickMode(ticks);
    slider->setValue(0.5);
    return slider;
}

std::unique_ptr<QWidget> peer(QSlider::TickPosition ticks) {
    auto slider = std::make_unique<QSlider>(Qt::Horizontal);
    slider->setRange(0, 1000);
    slider->setTickPosition(ticks);
    slider->setTickInterval(50);
    slider->setValue(500);
    return slider;
}

} // namespace

void registerSliderBenchmarks() {
    const std::string plain = "slider of 300 px: a movement and what it paints";
    Bench::add(plain, "ours",
               [](benchmark::State& state) { drag(state, ours(LinearSlider::NoTicks)); });
    Bench::add(plain, "QSlider",
               [](benchmark::State& state) { drag(state, peer(QSlider::NoTicks)); });
    Bench::targetRatio(plain, "QSlider", 0.8);

    const std::string ticks = "slider of 300 px with ticks: a movement";
    Bench::add(ticks, "ours",
               [](benchmark::State& state) { drag(state, ours(LinearSlider::TicksAndLabels)); });
    Bench::add(ticks, "QSlider",
               [](benchmark::State& state) { drag(state, peer(QSlider::TicksBelow)); });
    Bench::targetRatio(ticks, "QSlider", 1);

    const std::string tiny = "tiny slider of 300 px: a movement";
    Bench::add(tiny, "ours",
               [](benchmark::State& state) { drag(state, std::make_unique<TinySlider>()); });
    Bench::add(tiny, "QSlider",
               [](benchmark::State& state) { drag(state, peer(QSlider::NoTicks)); });
    Bench::targetRatio(tiny, "QSlider", 1);
}
