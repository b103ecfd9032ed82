#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineData_p.h>
#include <KxUI/charts/LineSeries.h>

#include <support/Bench.h>

#include <QCoreApplication>
#include <QMouseEvent>

#ifdef KXUI_BENCH_QCUSTOMPLOT
#include <qcustomplot.h>
#endif
#ifdef KXUI_BENCH_QWT
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#endif

#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace Kestrel;

constexpr int Width = 1200;
constexpr int Height = 400;
constexpr int Million = 1000000;

struct Points {
    std::vector<double> x;
    std::vector<double> y;
};

// Something that was recorded: a wave with noise.
Points recorded(int count) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    Points points;
    for (int i = 0; i < count; ++i) {
        points.x.push_back(i);
        points.y.push_back(2.0 * std::sin(i * 20.0 / count) + 0.3 * unit(random));
    }
    return points;
}

void showNow(QWidget& widget) {
    widget.resize(Width, Height);
    widget.show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

// Ranges of the same length by turns: everything is drawn anew.
double startOf(int turn) {
    return turn % 2 == 0 ? 0 : -1;
}

void addRepaint() {
    const std::string work = "repaint a million points";
    Bench::add(work, "ours", [](benchmark::State& state) {
        UI::LineChart chart;
        auto* series = new UI::LineSeries;
        Points points = recorded(Million);
        series->setData(std::move(points.x), std::move(points.y));
        chart.addSeries(series);
        chart.yAxis()->setRange(-3, 3);
        showNow(chart);
        int turn = 0;
        for (auto _ : state) {
            const double start = startOf(turn++);
            chart.xAxis()->setRange(start, start + Million);
            chart.repaint();
        }
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        QCustomPlot plot;
        const Points points = recorded(Million);
        plot.addGraph()->setData(QVector<double>(points.x.begin(), points.x.end()),
                                 QVector<double>(points.y.begin(), points.y.end()), true);
        // What it has to be fast with: columns of pixels, lines without smooth edges, as ours.
        plot.graph()->setAdaptiveSampling(true);
        plot.setNotAntialiasedElements(QCP::aeAll);
        plot.setNoAntialiasingOnDrag(true);
        plot.yAxis->setRange(-3, 3);
        showNow(plot);
        int turn = 0;
        for (auto _ : state) {
            const double start = startOf(turn++);
            plot.xAxis->setRange(start, start + Million);
            plot.replot(QCustomPlot::rpImmediateRefresh);
        }
    });
    Bench::targetRatio(work, "QCustomPlot", 10);
#endif
#ifdef KXUI_BENCH_QWT
    Bench::add(work, "Qwt", [](benchmark::State& state) {
        QwtPlot plot;
        auto* canvas = new QwtPlotCanvas;
        canvas->setPaintAttribute(QwtPlotCanvas::ImmediatePaint);
        plot.setCanvas(canvas);
        auto* curve = new QwtPlotCurve;
        const Points points = recorded(Million);
        curve->setSamples(QVector<double>(points.x.begin(), points.x.end()),
                          QVector<double>(points.y.begin(), points.y.end()));
        curve->attach(&plot);
        plot.setAxisScale(QwtPlot::yLeft, -3, 3);
        showNow(plot);
        int turn = 0;
        for (auto _ : state) {
            const double start = startOf(turn++);
            plot.setAxisScale(QwtPlot::xBottom, start, start + Million);
            plot.replot();
        }
    });
    Bench::targetRatio(work, "Qwt", 80);
#endif
}

// A point as a profiler adds it: into a chart that is shown, with a capacity that is reached.
void addAppend() {
    const std::string work = "append a point";
    Bench::add(work, "ours", [](benchmark::State& state) {
        UI::LineChart chart;
        auto* series = new UI::LineSeries;
        series->setCapacity(Million);
        chart.addSeries(series);
        Points points = recorded(Million);
        series->setData(std::move(points.x), std::move(points.y));
        showNow(chart);
        double x = Million;
        for (auto _ : state) {
            series->append(x, std::fmod(x, 7));
            x += 1;
        }
    });
    Bench::target(work, 1);
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        QCustomPlot plot;
        const Points points = recorded(Million);
        plot.addGraph()->setData(QVector<double>(points.x.begin(), points.x.end()),
                                 QVector<double>(points.y.begin(), points.y.end()), true);
        double x = Million;
        for (auto _ : state) {
            plot.graph()->addData(x, std::fmod(x, 7));
            plot.graph()->data()->removeBefore(x - Million);
            x += 1;
        }
    });
#endif
}

// A recording of a day: ten million points through a line that keeps a million.
void addLongRecording() {
    const std::string work = "append ten million points, a million kept";
    constexpr int Points = 10 * Million;
    Bench::add(work, "ours", [](benchmark::State& state) {
        for (auto _ : state) {
            UI::LineSeries series;
            series.setCapacity(Million);
            for (int i = 0; i < Points; ++i)
                series.append(i, i % 7);
            benchmark::DoNotOptimize(series.size());
        }
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        for (auto _ : state) {
            QCPGraphDataContainer points;
            for (int i = 0; i < Points; ++i) {
                points.add(QCPGraphData(i, i % 7));
                points.removeBefore(i - Million);
            }
            benchmark::DoNotOptimize(points.size());
        }
    });
#endif
}

// The pointer moves over a chart whose points are drawn already.
void addHover() {
    Bench::add("hover over a million points", "ours", [](benchmark::State& state) {
        UI::LineChart chart;
        auto* series = new UI::LineSeries;
        Points points = recorded(Million);
        series->setData(std::move(points.x), std::move(points.y));
        chart.addSeries(series);
        showNow(chart);
        int x = 0;
        for (auto _ : state) {
            x = (x + 1) % 600;
            QMouseEvent event(QEvent::MouseMove, QPointF(300 + x, 200), chart.mapToGlobal(QPoint()),
                              Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&chart, &event);
            QCoreApplication::processEvents();
        }
    });
}

// A second of ten charts that get sixty points each: thirty repaints of each, whatever comes.
void addStreams() {
    const std::string work = "a second of ten charts at 60 points";
    Bench::add(work, "ours", [](benchmark::State& state) {
        std::vector<std::unique_ptr<UI::LineChart>> charts;
        for (int i = 0; i < 10; ++i) {
            charts.push_back(std::make_unique<UI::LineChart>());
            auto* series = new UI::LineSeries;
            series->setCapacity(100000);
            charts.back()->addSeries(series);
            Points points = recorded(10000);
            series->setData(std::move(points.x), std::move(points.y));
            charts.back()->xAxis()->setRange(9400, 10000);
            charts.back()->setFollowing(true);
            charts.back()->resize(400, 200);
            charts.back()->show();
        }
        double x = 10000;
        for (auto _ : state) {
            for (int frame = 0; frame < 60; ++frame, ++x) {
                for (const auto& chart : charts) {
                    chart->series()[0]->append(x, std::fmod(x, 7));
                    if (frame % 2 == 1)
                        chart->repaint();
                }
            }
        }
    });
    Bench::target(work, 100000); // a tenth of a second
}

} // namespace

void registerBenchmarks() {
    addRepaint();
    addAppend();
    addLongRecording();
    addHover();
    addStreams();
}
