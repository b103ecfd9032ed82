#include <KxUI/color/ColorWheel.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QMouseEvent>

#include <cmath>

using Kestrel::UI::ColorWheel;

/** Registers its cases along with those of the colour rows. */
void registerColorWheelBenchmarks();

namespace {

constexpr int Side = 800;

void sendMouse(QWidget& wheel, QEvent::Type type, const QPointF& fromCentre) {
    const bool pressed = type != QEvent::MouseButtonRelease;
    QMouseEvent event(type, QPointF(Side / 2.0, Side / 2.0) + fromCentre, Qt::LeftButton,
                      pressed ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&wheel, &event);
}

struct ShownWheel : ColorWheel {
    explicit ShownWheel(DisplayMode mode)
        : ColorWheel({}, mode) {
        resize(Side, Side);
        show();
        QCoreApplication::processEvents();
    }
};

// One movement of the mouse and what it paints. The marker circles about the centre.
void dragMarker(benchmark::State& state, ColorWheel::DisplayMode mode, double from, double radius) {
    ShownWheel wheel(mode);
    sendMouse(wheel, QEvent::MouseButtonPress, {from, 0.0});
    double angle = 0.0;
    for (auto _ : state) {
        angle += 0.02;
        sendMouse(wheel, QEvent::MouseMove, {radius * std::cos(angle), radius * std::sin(angle)});
        QCoreApplication::processEvents();
    }
    sendMouse(wheel, QEvent::MouseButtonRelease, {from, 0.0});
}

// One change and what it paints.
template <class Change>
void change(benchmark::State& state, ColorWheel::DisplayMode mode, const Change& apply) {
    ShownWheel wheel(mode);
    int step = 0;
    for (auto _ : state) {
        apply(wheel, static_cast<float>(++step % 100) / 100.0F);
        QCoreApplication::processEvents();
    }
}

} // namespace

void registerColorWheelBenchmarks() {
    using namespace Kestrel::Bench;

    const auto drag = [](const std::string& work, ColorWheel::DisplayMode mode, double from,
                         double radius, double references) {
        add(work, "ours", [=](benchmark::State& state) { dragMarker(state, mode, from, radius); });
        target(work, references);
    };
    drag("wheel at 800 px: drag of the marker", ColorWheel::PlainWheel, 0.0, 250.0, 100);
    drag("wheel at 800 px: drag of the marker in the square", ColorWheel::SquareWheel, 0.0, 150.0,
         100);
    drag("wheel at 800 px: drag of the hue about the square", ColorWheel::SquareWheel, 360.0, 360.0,
         300);
    drag("wheel at 800 px: drag on the value ring", ColorWheel::ValueRingWheel, 390.0, 390.0, 100);

    const std::string value = "wheel at 800 px: value change";
    add(value, "ours", [](benchmark::State& state) {
        change(state, ColorWheel::ValueRingWheel, [](ColorWheel& wheel, float x) {
            wheel.setValue(x);
            wheel.setRingValue(x);
        });
    });
    target(value, 300);

    add("wheel at 800 px: all drawn anew", "ours", [](benchmark::State& state) {
        change(state, ColorWheel::PlainWheel,
               [](ColorWheel& wheel, float x) { wheel.setHueRotation(x); });
    });
}
