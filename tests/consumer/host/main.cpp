// A host in a few lines: the sequences of a folder, and a timeline for the first of them.

#include <KxUI/Version.h>
#include <KxUI/files/FileInfoList.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>
#include <KxUI/time/TimeSliderModel.h>

#include <QApplication>

#include <cstdio>

using namespace Kestrel::UI;

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    FileInfoList list;
    list.setShouldFilterSequences(true);
    std::printf("KxUI %s: %d entries\n", KXUI_VERSION_STRING, list.fill(QStringLiteral(".")));

    TimeSliderModel model;
    TimeFormatter formatter;
    TimeSlider slider(&model, &formatter, 1, TimeSlider::MainTransport);
    model.setTimes(1001, Kestrel::Base::InvalidTime, Kestrel::Base::InvalidTime, 1240, 1001);
    slider.zoomToFit();
    std::printf("%s\n", qPrintable(formatter.formatTime(model.endTime())));
    return slider.grab().isNull() ? 1 : 0;
}
