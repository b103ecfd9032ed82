#include <KxUI/curves/Curve.h>

#include <gsl/gsl_spline.h>
#include <support/TestRegistry.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

using Kestrel::UI::Curve;

// The same natural cubic spline as computed in double precision by the GNU Scientific Library.
class CurveReferenceTest : public QObject {
    Q_OBJECT

private slots:
    void valuesAgree() {
        std::mt19937 random(3);
        std::uniform_real_distribution<float> unit(0.0F, 1.0F);
        for (int round = 0; round < 2000; ++round) {
            const auto count = std::size_t(3 + round % 6);
            std::vector<float> positions(count);
            for (std::size_t i = 0; i < count; ++i)
                positions[i] = (float(i) + 0.8F * unit(random)) / float(count);

            Curve curve(8, unsigned(count));
            std::vector<double> x(count);
            std::vector<double> y(count);
            for (std::size_t i = 0; i < count; ++i) {
                curve.setKnot(int(i), {positions[i], unit(random), false});
                x[i] = double(curve.knot(int(i)).x);
                y[i] = double(curve.knot(int(i)).y);
            }
            const std::unique_ptr<gsl_spline, decltype(&gsl_spline_free)> spline(
                gsl_spline_alloc(gsl_interp_cspline, count), &gsl_spline_free);
            gsl_spline_init(spline.get(), x.data(), y.data(), count);
            for (int sample = 0; sample <= 64; ++sample) {
                const double at = x.front() + (x.back() - x.front()) * sample / 64;
                const double expected = gsl_spline_eval(
                    spline.get(), std::clamp(double(float(at)), x.front(), x.back()), nullptr);
                const double difference = std::abs(double(curve.valueAt(float(at))) - expected);
                QVERIFY2(difference < 2e-5, qPrintable(QString::number(difference)));
            }
        }
    }
};

KXUI_TEST(CurveReferenceTest);
#include "CurveReferenceTest.moc"
