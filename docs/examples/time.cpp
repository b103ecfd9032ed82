// A timeline and the transport controls on one model.

#include <KxUI/time/TimeFormatChooser.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderModel.h>
#include <KxUI/time/TransportControlsWidget.h>

#include <QApplication>
#include <QHBoxLayout>

using namespace Kestrel;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // The colours of all sliders, before the first is made.
    UI::TimeSlider::SetStandardPlayheadColor(QColor(0xf0, 0x80, 0x20));
    UI::TimeSlider::SetInOutMarkerColor(QColor(0x30, 0x80, 0xe0));
    UI::TimeSlider::SetKeyFrameColor(QColor(0xd0, 0xa0, 0x00));

    QWidget window;
    auto* model = new UI::TimeSliderModel(&window);
    auto* formatter = new UI::TimeFormatter(&window);
    auto* slider = new UI::TimeSlider(model, formatter, 1, UI::TimeSlider::MainTransport);
    auto* controls = new UI::TransportControlsWidget;
    auto* chooser = new UI::TimeFormatChooser(formatter);

    auto* row = new QHBoxLayout;
    row->addWidget(controls, 1);
    row->addWidget(chooser);
    auto* column = new QVBoxLayout(&window);
    column->addWidget(slider);
    column->addLayout(row);

    // The model is where the time is; everything else shows it or asks it to change.
    controls->setFormatter(formatter);
    QObject::connect(model, &UI::TimeSliderModel::timeChanged, controls,
                     [=](UI::TimeSliderModel::TimeFlags flags) {
                         if (flags & UI::TimeSliderModel::CurrentTime)
                             controls->setCurrentTime(model->currentTime());
                     });
    using Controls = UI::TransportControlsWidget;
    using Model = UI::TimeSliderModel;
    QObject::connect(controls, &Controls::timeChanged, model, &Model::setCurrentTime);
    QObject::connect(controls, &Controls::frameForwardsButtonClicked, model, &Model::frameForwards);
    QObject::connect(controls, &Controls::frameBackwardsButtonClicked, model,
                     &Model::frameBackwards);

    formatter->setTimeBase(Base::TimeBase::standard(Base::TimeBase::Rate24));
    model->setTimes(Model::Times().withClip(1001, 1240).withMarks(1040, 1200).withCurrent(1096));
    model->setKeyFrames(std::set<Base::Time>{1060, 1096, 1150});
    slider->setCacheBarColor(QColor(0x40, 0xa0, 0x40), 0);
    slider->setCachedFrames(Base::frameSetOf({{1040, 1129}}), 0);
    slider->zoomToFit();
    controls->playbackStateChanged(UI::Stopped); // there is something to play

    window.resize(720, 110);
    window.show();
    return QApplication::exec();
}
