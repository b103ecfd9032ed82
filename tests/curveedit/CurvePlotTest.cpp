#include <KxUI/curveedit/CurvePick_p.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QtTest>

#include <cmath>
#include <random>

using namespace Kestrel::UI;

namespace {

QString texts(const CurveTicks& ticks, bool areLong) {
    QStringList texts;
    for (const CurveTick& tick : ticks.ticks) {
        if (tick.isLong == areLong)
            texts.append(QString::number(tick.value, 'g', 10));
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class CurvePlotTest : public QObject {
    Q_OBJECT

private slots:
    void comesBack_data() { Kestrel::Test::addSeeds(300); }

    // Pixels to numbers and back, whatever the scale and the range.
    void comesBack() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        const auto scale = AxisScale(seed % 3);
        const double width = std::pow(10, 12 * unit(random) - 6);
        const double low = scale == AxisScale::Logarithmic ? std::pow(10, 6 * unit(random) - 3)
                                                           : (unit(random) - 0.5) * 10 * width;
        const CurveAxis axis(scale, {low, low + width}, 8, seed % 2 == 0 ? 1200 : -400,
                             2 + 254 * unit(random));
        QVERIFY(std::abs(axis.pixelOf(low) - 8) < 1e-6);
        for (int i = 0; i < 50; ++i) {
            const double value = low + width * unit(random);
            const double again = axis.valueAt(axis.pixelOf(value));
            QVERIFY(std::abs(again - value) < 1e-9 * std::max(std::abs(value), width));
            const double step = 1e-4 * std::min(width, std::abs(value));
            if (step < 1e-7 * std::abs(value))
                continue; // too little for a difference
            const double rise = axis.pixelOf(value + step) - axis.pixelOf(value - step);
            QVERIFY(std::abs(axis.pixelsPerUnit(value) / (rise / step / 2) - 1) < 1e-3);
        }
    }

    void shadows() {
        const CurveAxis axis(AxisScale::Shadows, {0, 1}, 0, 1);
        QVERIFY(std::abs(axis.pixelOf(0.18) - 0.60) < 0.01);
        QVERIFY(std::abs(axis.pixelOf(0.01) - 0.12) < 0.01);
        QCOMPARE(axis.pixelOf(-0.2), -axis.pixelOf(0.2));
        QVERIFY(CurveAxis(AxisScale::Logarithmic, {0, 1}, 0, 1).isLinear());
        QCOMPARE(CurveAxis(AxisScale::Linear, {1, 1}, 0, 1).span().high, 1.0);
        QCOMPARE(CurveAxis(AxisScale::Linear, {0, NAN}, 0, 1).span().high, 1.0);
    }

    // The place under the mouse stays, also at the limits; no way leads to an empty range.
    void zooms_data() { Kestrel::Test::addSeeds(60); }

    void zooms() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        const CurvePlot::Scales scales{AxisScale(seed % 3), AxisScale(seed / 3 % 3), 64};
        // Powers of ten begin above 0; elsewhere the scale would change on the way.
        const QRectF nominal = seed % 2 == 0 ? QRectF(0.01, 0.01, 1, 1) : QRectF(1001, 5, 239, 10);
        const QRectF rect(8, 8, 400, 300);
        QRectF range = nominal;
        for (int i = 0; i < 200; ++i) {
            const CurvePlot plot(rect, range, scales);
            const bool isSwitched = plot.isLinearX() != (scales.x == AxisScale::Linear) ||
                                    plot.isLinearY() != (scales.y == AxisScale::Linear);
            QVERIFY(!isSwitched);
            const QPointF at(rect.left() + rect.width() * unit(random),
                             rect.top() + rect.height() * unit(random));
            if (i % 8 == 0) {
                range = plot.panned(at - rect.center(), nominal);
            } else {
                const double factor = std::exp2(seed % 5 < 3 ? 2 : -2);
                range = plot.zoomed(at, factor, factor, nominal);
                // Beyond that, the far ends of what can be shown stop it.
                if (factor < 1 && (range.width() > 1e6 * nominal.width() ||
                                   range.height() > 1e6 * nominal.height()))
                    continue;
                const QPointF place = plot.toCurve(at);
                const QPointF moved = CurvePlot(rect, range, scales).toWidget(place) - at;
                QVERIFY(std::abs(moved.x()) < 0.5 && std::abs(moved.y()) < 0.5);
            }
            QVERIFY(range.width() > 0 && range.height() > 0);
            QVERIFY(std::isfinite(range.right()) && std::isfinite(range.bottom()));
            const CurvePlot now(rect, range, scales);
            QVERIFY(now.xAt(rect.left() + 1) > now.xAt(rect.left()));
            QVERIFY(now.yAt(rect.top()) > now.yAt(rect.top() + 1));
        }
        if (scales.x == AxisScale::Linear && seed % 5 < 3)
            QVERIFY(range.width() < nominal.width() * 1e-6);
        if (scales.x == AxisScale::Linear && seed % 5 >= 3)
            QVERIFY(std::abs(range.width() / nominal.width() - 1e9) < 1e3);
    }

    void ticks_data() {
        const Kestrel::Test::Columns<int, double, double, QString, QString> row(
            "scale", "low", "high", "long ones", "short ones");
        row("even", 0, 0, 1, "0 0.2 0.4 0.6 0.8 1",
            "0.05 0.1 0.15 0.25 0.3 0.35 0.45 0.5 0.55 0.65 0.7 0.75 0.85 0.9 0.95");
        row("across zero", 0, -7, 9, "-5 0 5", "-7 -6 -4 -3 -2 -1 1 2 3 4 6 7 8 9");
        row("decades", 1, 0.01, 1000, "0.01 0.1 1 10 100 1000",
            "0.03 0.05 0.3 0.5 3 5 30 50 300 500");
        row("many decades", 1, 1e-20, 1, "1e-20 1e-16 1e-12 1e-08 0.0001 1", "");
        row("a part of a decade", 1, 2, 3, "2 2.5 3", "");
        row("shadows", 2, 0, 1, "0 0.1 1", "");
        row("shadows below zero", 2, -1, 1, "-1 -0.1 0 0.1 1", "");
    }

    void ticks() {
        QFETCH(int, scale);
        QFETCH(double, low);
        QFETCH(double, high);
        const CurveAxis axis(AxisScale(scale), {low, high}, 0, 240);
        const CurveTicks plan = CurveTicks::of(axis, 8, 40);
        QTEST(texts(plan, true), "long ones");
        if (!QTest::currentDataTag() || scale == 0)
            QTEST(texts(plan, false), "short ones");
        for (std::size_t i = 1; i < plan.ticks.size(); ++i)
            QVERIFY(plan.ticks[i].pixel - plan.ticks[i - 1].pixel >= 7.9);
    }

    void picksTheNearest_data() { Kestrel::Test::addSeeds(100); }

    // As a search through all knots does.
    void picksTheNearest() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        std::vector<KeyCurve::Key> keys(seed % 4 == 0 ? 5000 : 40);
        for (KeyCurve::Key& key : keys) {
            key.x = unit(random);
            key.y = unit(random);
        }
        KeyCurveModel model;
        model.addCurve(QString(), KeyCurve(keys));
        CurveScene scene;
        scene.model = &model;
        scene.curves = {0};
        scene.plot = CurvePlot({8, 8, 600, 400}, {0.1, 0, 0.8, 1});
        for (int i = 0; i < 50; ++i) {
            const QPointF at(8 + 600 * unit(random), 8 + 400 * unit(random));
            double nearest = CurvePick::KnotReach;
            for (int knot = 0; knot < model.knots(0); ++knot) {
                const CurveModel::Knot each = model.knot(0, knot);
                nearest =
                    std::min(nearest, QLineF(scene.plot.toWidget({each.x, each.y}), at).length());
            }
            const CurveHit hit = CurvePick::knotAt(scene, at);
            QCOMPARE(bool(hit), nearest < CurvePick::KnotReach);
            if (hit)
                QCOMPARE(QLineF(hit.place, at).length(), nearest);
        }
    }

    void picksWhatIsMeant() {
        KeyCurveModel model;
        for (const char* text : {"(0, 0), (0.5, 0.5), (1, 1)", "(0, 1), (0.502, 0.5), (1, 0)"}) {
            KeyCurve curve;
            curve.setText(text);
            model.addCurve(QString(), curve);
        }
        CurveScene scene;
        scene.model = &model;
        scene.curves = {0, 1};
        scene.plot = CurvePlot({0, 0, 200, 200}, {0, 0, 1, 1});
        const auto curveAt = [&](const QPointF& at) { return CurvePick::at(scene, at).curve; };
        QCOMPARE(curveAt({100.5, 100}), 0); // nearly a tie: that of the current curve
        scene.current = 1;
        QCOMPARE(curveAt({100, 100}), 1);
        model.select(0, 1, 1, CurveModel::SelectOnly);
        QCOMPARE(curveAt({100.4, 100}), 0); // a selected one before that
        QCOMPARE(CurvePick::at(scene, {100.4, 100}).rivals, 1);
        CurveHit handle = CurvePick::at(scene, *CurvePick::handlesOf(scene, 0, 1).in);
        QCOMPARE(int(handle.part), int(CurveHit::HandleIn));
        model.select(0, 0, -1, CurveModel::SelectOnly);
        QCOMPARE(int(CurvePick::at(scene, {50, 145}).part), int(CurveHit::Line));
        QCOMPARE(curveAt({50, 145}), 0);
        QCOMPARE(curveAt({50, 120}), -1);
        // A step is near, too, from its side.
        QVERIFY(model.setShape(0, {0, 1}, int(KeyCurve::Shape::Constant)));
        scene.curves = {0};
        QCOMPARE(int(CurvePick::at(scene, {196, 50}).part), int(CurveHit::Line));
        // What lies outside of the limits is at their edge.
        CurvesModel square;
        square.load(0, "(0, 0), (0.5, 1.5), (1, 1)");
        scene.model = &square;
        scene.curves = {0};
        scene.current = 0;
        QCOMPARE(CurvePick::at(scene, {100, 2}).knot, 1);
    }
};

KXUI_TEST(CurvePlotTest);
#include "CurvePlotTest.moc"
