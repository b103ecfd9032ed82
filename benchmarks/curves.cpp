#include <KxUI/curves/Curve.h>
#include <KxUI/curves/Curves.h>
#include <KxUI/curves/KeyCurve.h>

#include <gsl/gsl_spline.h>
#include <support/Bench.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

using Kestrel::UI::Curve;
using Kestrel::UI::Curves;
using Kestrel::UI::KeyCurve;

namespace {

constexpr unsigned int TableSize = 65536;
constexpr std::size_t Knots = 8;

constexpr double KnotX[Knots] = {0.0, 0.09, 0.21, 0.34, 0.55, 0.68, 0.83, 1.0};
constexpr double KnotY[Knots] = {0.02, 0.05, 0.3, 0.28, 0.66, 0.71, 0.95, 1.0};

Curve eightKnots() {
    Curve curve(Knots, Knots);
    for (std::size_t i = 0; i < Knots; ++i)
        curve.setKnot(int(i), {float(KnotX[i]), float(KnotY[i]), false});
    return curve;
}

struct GslSpline {
    GslSpline() { gsl_spline_init(spline.get(), KnotX, KnotY, Knots); }

    double operator()(double x) const { return gsl_spline_eval(spline.get(), x, lookup.get()); }

    std::unique_ptr<gsl_spline, decltype(&gsl_spline_free)> spline{
        gsl_spline_alloc(gsl_interp_cspline, Knots), &gsl_spline_free};
    std::unique_ptr<gsl_interp_accel, decltype(&gsl_interp_accel_free)> lookup{
        gsl_interp_accel_alloc(), &gsl_interp_accel_free};
};

// More positions than a branch predictor remembers.
std::vector<float> randomPositions() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> unit(0.0F, 1.0F);
    std::vector<float> positions(TableSize);
    for (float& each : positions)
        each = unit(random);
    return positions;
}

template <class Evaluate>
void evaluateAll(benchmark::State& state, const Evaluate& evaluate) {
    const std::vector<float> positions = randomPositions();
    for (auto _ : state) {
        for (const float x : positions)
            benchmark::DoNotOptimize(evaluate(x));
    }
    state.SetItemsProcessed(std::int64_t(state.iterations()) * std::int64_t(positions.size()));
}

// Keys of an animated parameter, on every frame or so.
struct ManyKeys {
    static constexpr std::size_t Count = 10000;

    ManyKeys() {
        std::mt19937 random(2);
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        for (std::size_t i = 0; i < Count; ++i) {
            x.push_back(double(i) + 0.8 * unit(random));
            y.push_back(unit(random));
        }
    }
    KeyCurve curve(KeyCurve::Shape shape) const {
        std::vector<KeyCurve::Key> keys(Count);
        for (std::size_t i = 0; i < Count; ++i) {
            keys[i].x = x[i];
            keys[i].y = y[i];
            keys[i].shape = shape;
        }
        return KeyCurve(keys);
    }
    std::vector<double> x;
    std::vector<double> y;
};

void benchmarkKeys() {
    using namespace Kestrel::Bench;

    const std::string table = "keys: 65,536 samples of 10,000 keys";
    add(table, "ours", [](benchmark::State& state) {
        const ManyKeys keys;
        const KeyCurve curve = keys.curve(KeyCurve::Shape::Monotone);
        std::vector<double> out(TableSize);
        for (auto _ : state) {
            curve.sample(keys.x.front(), keys.x.back(), TableSize, out.data());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    });
    add(table, "GSL, Steffen", [](benchmark::State& state) {
        const ManyKeys keys;
        const std::unique_ptr<gsl_spline, decltype(&gsl_spline_free)> spline(
            gsl_spline_alloc(gsl_interp_steffen, ManyKeys::Count), &gsl_spline_free);
        gsl_spline_init(spline.get(), keys.x.data(), keys.y.data(), ManyKeys::Count);
        const std::unique_ptr<gsl_interp_accel, decltype(&gsl_interp_accel_free)> lookup(
            gsl_interp_accel_alloc(), &gsl_interp_accel_free);
        std::vector<double> out(TableSize);
        const double step = (keys.x.back() - keys.x.front()) / (TableSize - 1);
        for (auto _ : state) {
            for (unsigned int i = 0; i < TableSize; ++i)
                out[i] = gsl_spline_eval(
                    spline.get(), std::min(keys.x.front() + i * step, keys.x.back()), lookup.get());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    });
    targetRatio(table, "GSL, Steffen", 3);

    const std::string edit = "keys: one of 10,000 moved";
    const auto move = [](KeyCurve::Shape shape) {
        return [shape](benchmark::State& state) {
            const ManyKeys keys;
            KeyCurve curve = keys.curve(shape);
            KeyCurve::Key key = curve.key(ManyKeys::Count / 2);
            for (auto _ : state) {
                key.y += 1e-3;
                benchmark::DoNotOptimize(curve.setKey(ManyKeys::Count / 2, key));
            }
        };
    };
    add(edit, "ours", move(KeyCurve::Shape::Monotone));
    add(edit, "ours, one spline over all", move(KeyCurve::Shape::Natural));
    add(edit, "GSL, its spline anew", [](benchmark::State& state) {
        const ManyKeys keys;
        const std::unique_ptr<gsl_spline, decltype(&gsl_spline_free)> spline(
            gsl_spline_alloc(gsl_interp_cspline, ManyKeys::Count), &gsl_spline_free);
        for (auto _ : state)
            gsl_spline_init(spline.get(), keys.x.data(), keys.y.data(), ManyKeys::Count);
    });
}

} // namespace

void registerBenchmarks() {
    using namespace Kestrel::Bench;

    const std::string table = "curve: table of 65,536 from 8 knots";
    add(table, "ours", [](benchmark::State& state) {
        const Curve curve = eightKnots();
        std::vector<float> out(TableSize);
        for (auto _ : state) {
            curve.buildLUT(TableSize, out.data());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    });
    add(table, "GSL", [](benchmark::State& state) {
        const GslSpline spline;
        std::vector<double> out(TableSize);
        for (auto _ : state) {
            for (unsigned int i = 0; i < TableSize; ++i)
                out[i] = spline(double(i) / (TableSize - 1));
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    });
    targetRatio(table, "GSL", 10);

    const std::string value = "curve: value at a random x";
    add(value, "ours", [](benchmark::State& state) {
        const Curve curve = eightKnots();
        evaluateAll(state, [&](float x) { return curve.valueAt(x); });
    });
    add(value, "GSL", [](benchmark::State& state) {
        const GslSpline spline;
        evaluateAll(state, [&](float x) { return spline(double(x)); });
    });
    targetRatio(value, "GSL", 3);

    add("curves: RGBA table of 65,536, three channels and a master", "ours",
        [](benchmark::State& state) {
            Curves curves;
            for (int i = 0; i < Curves::MaximumCurves; ++i)
                curves.addCurve(eightKnots());
            std::vector<unsigned short> out(std::size_t(4) * TableSize);
            for (auto _ : state) {
                curves.buildRGBALUT(TableSize, out.data());
                benchmark::DoNotOptimize(out.data());
                benchmark::ClobberMemory();
            }
        });
    benchmarkKeys();
}
