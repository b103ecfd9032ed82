#include <KxUI/color/ColorWheel.h>
#include <KxUI/picker/ColorPicker.h>
#include <KxUI/picker/ColorSlider.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QGridLayout>
#include <QMouseEvent>

#include <QtColorWidgets/color_dialog.hpp>
#include <QtColorWidgets/gradient_slider.hpp>

#include <cmath>

namespace {

using namespace Kestrel;
namespace Bench = Kestrel::Bench;

constexpr int Length = 300;

float part(int step) {
    return static_cast<float>(step % 100) / 100.0F;
}

template <class Widget>
void bring(Widget& widget) {
    widget.show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

void slideOurs(benchmark::State& state) {
    UI::ColorSlider slider;
    slider.resize(Length, slider.sizeHint().height());
    bring(slider);
    int step = 0;
    for (auto _ : state) {
        slider.setColor({0.5F, part(++step), 0.3F, 1.0F});
        QCoreApplication::processEvents();
    }
}

void slideTheirs(benchmark::State& state) {
    color_widgets::GradientSlider slider(Qt::Horizontal);
    slider.resize(Length, slider.sizeHint().height());
    bring(slider);
    int step = 0;
    for (auto _ : state) {
        const double green = static_cast<double>(part(++step));
        slider.setColors(
            QVector<QColor>{QColor::fromRgbF(0.0, green, 0.3), QColor::fromRgbF(1.0, green, 0.3)});
        QCoreApplication::processEvents();
    }
}

/** The picker with the three sliders and numbers more that the peer's dialog has. */
class Panel : public QWidget {
public:
    Panel() {
        auto* grid = new QGridLayout(this);
        grid->addWidget(&picker, 0, 0, 1, 2);
        for (int i = 0; i < 3; ++i) {
            auto* slider = new UI::ColorSlider;
            slider->setComponent(UI::ColorModel::component(UI::ColorModel::Hsv, i));
            auto* number = new UI::DoubleSpinBox;
            QObject::connect(&picker, &UI::ColorPicker::colorChanged, slider,
                             &UI::ColorSlider::setColor);
            QObject::connect(slider, &UI::ColorSlider::valueChanged, number,
                             &UI::DoubleSpinBox::setValue);
            grid->addWidget(slider, i + 1, 0);
            grid->addWidget(number, i + 1, 1);
        }
        bring(*this);
        wheel = picker.findChild<UI::ColorWheel*>();
    }

    void drag(QEvent::Type type, double angle) const {
        const QPointF middle(wheel->width() / 2.0, wheel->height() / 2.0);
        const bool isPressed = type != QEvent::MouseButtonRelease;
        QMouseEvent event(type, middle + 60.0 * QPointF(std::cos(angle), std::sin(angle)),
                          Qt::LeftButton, isPressed ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(wheel, &event);
    }

    UI::ColorPicker picker;
    UI::ColorWheel* wheel = nullptr;
};

void pickOurs(benchmark::State& state) {
    Panel panel;
    panel.picker.setColor({0.8F, 0.4F, 0.2F, 1.0F});
    panel.drag(QEvent::MouseButtonPress, 0.0);
    double angle = 0.0;
    for (auto _ : state) {
        panel.drag(QEvent::MouseMove, angle += 0.02);
        QCoreApplication::processEvents();
    }
    panel.drag(QEvent::MouseButtonRelease, angle);
}

void pickTheirs(benchmark::State& state) {
    color_widgets::ColorDialog dialog;
    bring(dialog);
    int step = 0;
    for (auto _ : state) {
        dialog.setColor(QColor::fromHsvF(std::fmod(++step * 0.003, 1.0), 0.6, 0.8));
        QCoreApplication::processEvents();
    }
}

} // namespace

void registerSwatchBenchmarks();

void registerBenchmarks() {
    registerSwatchBenchmarks();
    const std::string slide = "colour slider at 300 px: another gradient, painted";
    Bench::add(slide, "ours", slideOurs);
    Bench::add(slide, "Qt-Color-Widgets", slideTheirs);
    Bench::targetRatio(slide, "Qt-Color-Widgets", 2);
    const std::string pick = "colour picker: a movement on the wheel, all painted";
    Bench::add(pick, "ours", pickOurs);
    Bench::add(pick, "Qt-Color-Widgets", pickTheirs);
    Bench::targetRatio(pick, "Qt-Color-Widgets", 1.5);
    const std::string made = "colour picker: made";
    Bench::add(made, "ours", [](benchmark::State& state) {
        for (auto _ : state)
            UI::ColorPicker().sizeHint();
    });
    Bench::add(made, "Qt-Color-Widgets", [](benchmark::State& state) {
        for (auto _ : state)
            color_widgets::ColorDialog().sizeHint();
    });
}
