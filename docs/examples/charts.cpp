// Times of a playback as they come, and where they went.

#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineSeries.h>

#include <QApplication>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>

using namespace Kestrel::UI;

namespace {

LineSeries* addTimes(LineChart* chart, const QString& name, LineSeries::Style style) {
    auto* series = new LineSeries;
    series->setName(name);
    series->setStyle(style);
    series->setCapacity(100000); // the newest points stay
    chart->addSeries(series);
    return series;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto* chart = new LineChart;
    chart->setTitle(QStringLiteral("Render times"));
    chart->xAxis()->setUnit(Ticks::Frames);
    chart->xAxis()->setTitle(QStringLiteral("frame"));
    chart->yAxis()->setUnit(Ticks::Seconds);
    chart->yAxis()->setRange(0, 0.06);
    chart->setBands({{1.0 / 24, 1.0 / 24, QColor(213, 94, 0), QStringLiteral("24 fps")}});

    LineSeries* const decode = addTimes(chart, QStringLiteral("Decode"), LineSeries::Area);
    LineSeries* const grade = addTimes(chart, QStringLiteral("Grade"), LineSeries::Line);
    LineSeries* const paint = addTimes(chart, QStringLiteral("Paint"), LineSeries::Step);
    const auto add = [=](int frame) {
        const double wave = std::sin(frame * 0.05);
        decode->append(frame, 0.021 + 0.008 * wave + (frame % 61 == 0 ? 0.024 : 0));
        // Frames from the cache are not graded: a gap.
        grade->append(frame,
                      frame / 40 % 3 == 1 ? std::nan("") : 0.012 + 0.003 * std::cos(frame * 0.2));
        paint->append(frame, 0.004 + 0.001 * (frame / 12 % 3));
    };
    for (int frame = 1001; frame < 1240; ++frame)
        add(frame);
    chart->xAxis()->setRange(1001, 1240);
    chart->setCursor(1180);

    // From here on the axis ends with the newest frame.
    chart->setFollowing(true);
    QTimer playback;
    int frame = 1240;
    QObject::connect(&playback, &QTimer::timeout, chart, [&] { add(frame++); });
    playback.start(1000 / 24);

    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(chart);
    window.resize(640, 300);
    window.show();
    return QApplication::exec();
}
