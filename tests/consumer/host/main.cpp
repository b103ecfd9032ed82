// A small host: lists the sequences of a folder, and shows a timeline, the transport row and a slider
// over a parameter for the first. `host FOLDER` opens the window, `host FOLDER PICTURE` saves it as a picture.

#include <KxUI/Version.h>
#include <KxUI/files/FileInfoList.h>
#include <KxUI/kit/CallbackParameter.h>
#include <KxUI/time/FrameSlider.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderModel.h>
#include <KxUI/time/TransportControlsWidget.h>

#include <QApplication>
#include <QVBoxLayout>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();

    FileInfoList list;
    list.setShouldFilterSequences(true);
    if (list.fill(arguments.value(1, QStringLiteral("."))) == 0) {
        std::fprintf(stderr, "host: %s\n", qPrintable(list.errorString()));
        return 1;
    }
    int first = 1;
    int last = 100;
    for (int i = list.size() - 1; i >= 0; --i) {
        if (list[i].isSequence()) {
            std::printf("%s\n", qPrintable(list[i].sequenceName()));
            first = list[i].startFrame();
            last = list[i].endFrame();
        }
    }

    QWidget window;
    TimeSliderModel model;
    TimeFormatter formatter;
    auto* slider = new TimeSlider(&model, &formatter, 1, TimeSlider::MainTransport);
    auto* transport = new TransportControlsWidget;
    model.setTimes(TimeSliderModel::Times().withClip(first, last).withCurrent(first));
    slider->zoomToFit();
    QObject::connect(transport, &TransportControlsWidget::timeChanged, &model,
                     &TimeSliderModel::setCurrentTime);
    QObject::connect(&model, &TimeSliderModel::timeChanged, transport,
                     [&] { transport->setCurrentTime(model.currentTime()); });
    transport->playbackStateChanged(Stopped);

    int held = first; // a number of the host's own
    CallbackParameter offset([&] { return QVariant(held); },
                             [&](const QVariant& wanted) {
                                 held = wanted.toInt();
                                 return true;
                             });
    offset.setRange(first, last);
    auto* frames = new FrameSlider;
    frames->setParameter(&offset);

    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(frames);
    layout->addWidget(slider);
    layout->addWidget(transport);
    window.setWindowTitle(QStringLiteral("A host of KxUI " KXUI_VERSION_STRING));
    window.resize(720, 180);
    if (arguments.size() > 2)
        return window.grab().save(arguments[2]) ? 0 : 1;
    window.show();
    return QApplication::exec();
}
