#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/curveedit/CurveView_p.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <support/Bench.h>

#include <QCoreApplication>

#ifdef KXUI_BENCH_QCUSTOMPLOT
#include <qcustomplot.h>
#endif
#ifdef KXUI_BENCH_QWT
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_symbol.h>
#endif

#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace Kestrel;
namespace Bench = Kestrel::Bench;

constexpr int Width = 1200;
constexpr int Height = 400;

struct Points {
    QVector<double> x;
    QVector<double> y;
};

// Something that was recorded: a wave with noise.
Points recorded(int count) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    Points points;
    for (int i = 0; i < count; ++i) {
        points.x.append(i);
        points.y.append(2.0 * std::sin(i * 20.0 / count) + 0.3 * unit(random));
    }
    return points;
}

void showNow(QWidget& widget) {
    widget.resize(Width, Height);
    widget.show();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

/** A view over keys. */
struct Ours {
    explicit Ours(int count) {
        const Points points = recorded(count);
        std::vector<UI::KeyCurve::Key> keys(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            keys[std::size_t(i)].x = points.x[i];
            keys[std::size_t(i)].y = points.y[i];
        }
        model.addCurve(QStringLiteral("recorded"), UI::KeyCurve(keys));
        view.setModel(&model);
        view.setNominalRange(QRectF(0, -3, count, 6));
        showNow(view);
    }

    UI::KeyCurveModel model;
    UI::CurveView view;
};

#ifdef KXUI_BENCH_QCUSTOMPLOT
struct CustomPlot {
    explicit CustomPlot(int count, bool hasSymbols) {
        const Points points = recorded(count);
        graph = plot.addGraph();
        graph->setData(points.x, points.y, true);
        if (hasSymbols)
            graph->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 6));
        plot.xAxis->setRange(0, count);
        plot.yAxis->setRange(-3, 3);
        showNow(plot);
    }

    QCustomPlot plot;
    QCPGraph* graph = nullptr;
};
#endif

#ifdef KXUI_BENCH_QWT
struct QwtCurve {
    explicit QwtCurve(int count) {
        const Points points = recorded(count);
        auto* canvas = new QwtPlotCanvas;
        canvas->setPaintAttribute(QwtPlotCanvas::ImmediatePaint);
        plot.setCanvas(canvas);
        auto* curve = new QwtPlotCurve;
        curve->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, Qt::red, QPen(Qt::red), QSize(6, 6)));
        curve->setRenderHint(QwtPlotItem::RenderAntialiased);
        curve->setSamples(points.x, points.y);
        curve->attach(&plot);
        showNow(plot);
    }

    QwtPlot plot;
};
#endif

void addRepaint() {
    const std::string work = "curves: 10,000 keys, repaint";
    Bench::add(work, "ours", [](benchmark::State& state) {
        Ours ours(10000);
        for (auto _ : state)
            ours.view.repaint();
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        CustomPlot peer(10000, true);
        for (auto _ : state)
            peer.plot.replot(QCustomPlot::rpImmediateRefresh);
    });
    Bench::targetRatio(work, "QCustomPlot", 5);
#endif
#ifdef KXUI_BENCH_QWT
    Bench::add(work, "Qwt", [](benchmark::State& state) {
        QwtCurve peer(10000);
        for (auto _ : state)
            peer.plot.replot();
    });
    Bench::targetRatio(work, "Qwt", 20);
#endif
}

// What was drawn before is of no use.
void addPan() {
    const std::string work = "curves: 10,000 keys, pan and repaint";
    Bench::add(work, "ours", [](benchmark::State& state) {
        Ours ours(10000);
        int step = 0;
        for (auto _ : state) {
            ours.view.setVisibleRange(QRectF(++step % 100, -3, 10000, 6));
            ours.view.repaint();
        }
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        CustomPlot peer(10000, true);
        int step = 0;
        for (auto _ : state) {
            step = (step + 1) % 100;
            peer.plot.xAxis->setRange(step, step + 10000);
            peer.plot.replot(QCustomPlot::rpImmediateRefresh);
        }
    });
    Bench::targetRatio(work, "QCustomPlot", 5);
#endif
}

void addMillion() {
    const std::string work = "curves: a million keys, repaint";
    Bench::add(work, "ours", [](benchmark::State& state) {
        Ours ours(1000000);
        for (auto _ : state)
            ours.view.repaint();
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        CustomPlot peer(1000000, false);
        for (auto _ : state)
            peer.plot.replot(QCustomPlot::rpImmediateRefresh);
    });
    Bench::targetRatio(work, "QCustomPlot", 1.5);
#endif
    const std::string moved = "curves: a million keys, one moved, repaint";
    Bench::add(moved, "ours", [](benchmark::State& state) {
        Ours ours(1000000);
        int step = 0;
        for (auto _ : state) {
            ours.model.move({{0, 500000, 500000.0, (++step % 10) * 0.1}});
            ours.view.repaint();
        }
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(moved, "QCustomPlot", [](benchmark::State& state) {
        CustomPlot peer(1000000, false);
        int step = 0;
        for (auto _ : state) {
            (peer.graph->data()->begin() + 500000)->value = (++step % 10) * 0.1;
            peer.plot.replot(QCustomPlot::rpImmediateRefresh);
        }
    });
    Bench::targetRatio(moved, "QCustomPlot", 1);
#endif
}

void addMovement() {
    const std::string work = "curves: 8 knots, one movement and repaint";
    Bench::add(work, "ours", [](benchmark::State& state) {
        UI::CurvesModel model;
        model.setCurve(0, UI::Curve(8, 8));
        UI::CurveView view;
        view.setModel(&model);
        showNow(view);
        int step = 0;
        for (auto _ : state) {
            model.move({{0, 4, model.knot(0, 4).x, 0.4 + 0.01 * (++step % 20)}});
            view.repaint();
        }
    });
#ifdef KXUI_BENCH_QCUSTOMPLOT
    Bench::add(work, "QCustomPlot", [](benchmark::State& state) {
        constexpr int Samples = 256;
        CustomPlot peer(Samples, false);
        int step = 0;
        for (auto _ : state) {
            const double y = 0.4 + 0.01 * (++step % 20);
            for (int i = 0; i < Samples; ++i)
                (peer.graph->data()->begin() + i)->value = y * std::sin(i * 0.02);
            peer.plot.replot(QCustomPlot::rpImmediateRefresh);
        }
    });
    Bench::targetRatio(work, "QCustomPlot", 2);
#endif
}

// What a movement of the mouse asks.
void addHits() {
    const std::string work = "curves: 10,000 keys, the knot at a random place";
    const auto anywhere = [] {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        std::vector<QPointF> places(1024);
        for (QPointF& place : places)
            place = {unit(random) * Width, unit(random) * Height};
        return places;
    };
    const std::vector<QPointF> places = anywhere();
    Bench::add(work, "ours", [places](benchmark::State& state) {
        Ours ours(10000);
        const UI::CurveScene scene = UI::CurveViewPrivate::of(&ours.view)->scene();
        std::size_t i = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(UI::CurvePick::knotAt(scene, places[++i % 1024]).knot);
    });
    Bench::add(work, "linear search", [places](benchmark::State& state) {
        Ours ours(10000);
        const UI::CurveScene scene = UI::CurveViewPrivate::of(&ours.view)->scene();
        std::size_t i = 0;
        for (auto _ : state) {
            const QPointF place = places[++i % 1024];
            int nearest = -1;
            double reach = UI::CurvePick::KnotReach;
            for (int knot = 0; knot < ours.model.knots(0); ++knot) {
                const UI::CurveModel::Knot each = ours.model.knot(0, knot);
                const QPointF way = scene.plot.toWidget({each.x, each.y}) - place;
                const double distance = std::hypot(way.x(), way.y());
                if (distance <= reach) {
                    reach = distance;
                    nearest = knot;
                }
            }
            benchmark::DoNotOptimize(nearest);
        }
    });
    Bench::targetRatio(work, "linear search", 200);
}

} // namespace

void registerBenchmarks() {
    addRepaint();
    addPan();
    addMillion();
    addMovement();
    addHits();
}
