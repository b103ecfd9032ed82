#include <KxUI/charts/BarGeometry_p.h>
#include <KxUI/charts/ChartColorProvider.h>
#include <KxUI/charts/PieGeometry_p.h>
#include <KxUI/charts/PieShares.h>
#include <KxUI/kit/ColorContrast_p.h>

#include <support/TestRegistry.h>

#include <cfloat>
#include <cmath>
#include <numeric>
#include <random>

using namespace Kestrel::UI;

namespace {

using Rows = std::vector<std::vector<double>>;

BarRules barRules(const Rows& values, BarChart::Arrangement arrangement, bool areLying = false) {
    BarRules rules;
    rules.values = values;
    rules.order = orderOfBars(values, 0, false);
    rules.arrangement = arrangement;
    rules.areLying = areLying;
    rules.places = {-0.5, double(rules.order.size()) - 0.5, false, 0, 100};
    rules.scale = {-10, 10, false, 100, -100};
    return rules;
}

std::vector<PieSlice> slicesOf(const std::vector<double>& values) {
    std::vector<PieSlice> slices;
    for (const double value : values)
        slices.push_back({QString(), value, {}, {}});
    return slices;
}

} // namespace

class ChartValuesTest : public QObject {
    Q_OBJECT

private slots:
    void barsStandOnZero() {
        const auto bars = arrangeBars(barRules({{5, -5, qQNaN(), 0, 1e-9}}, BarChart::Grouped));
        QCOMPARE(bars.size(), std::size_t(4));
        QCOMPARE(bars[0].rect, QRectF(2, 25, 16, 25));
        QCOMPARE(bars[1].rect, QRectF(22, 50, 16, 25));
        QVERIFY(bars[2].rect.isEmpty());
        QCOMPARE(bars[3].rect, QRectF(82, 49, 16, 1)); // a value is seen, however small
        for (const Bar& bar : arrangeBars(barRules({{1e308, -1e308}}, BarChart::Grouped)))
            QVERIFY(QRectF(0, 0, 100, 100).contains(bar.rect));
    }

    void stacksSumTheirSignsApart() {
        const Rows values{{2, 1}, {-3, 1}, {4, 2}};
        auto bars = arrangeBars(barRules(values, BarChart::Stacked));
        QCOMPARE(bars[0].rect, QRectF(5, 40, 40, 10));
        QCOMPARE(bars[1].rect, QRectF(5, 50, 40, 15));
        QCOMPARE(bars[2].rect, QRectF(5, 20, 40, 20));
        const BarRange stacked = rangeOfBars(values, BarChart::Stacked);
        QCOMPARE(stacked.lowest, -3.0);
        QCOMPARE(stacked.highest, 6.0);
        const BarRange percent = rangeOfBars(values, BarChart::Percent);
        QVERIFY(std::abs(percent.lowest + 3.0 / 9) < 1e-12);
        QCOMPARE(percent.highest, 1.0);
        const BarRange huge = rangeOfBars({{1.5e308}, {1.5e308}}, BarChart::Percent);
        QVERIFY(std::abs(huge.highest - 1) < 1e-9);
        BarRules lying = barRules(values, BarChart::Stacked, true);
        lying.scale = {-10, 10, false, 0, 100};
        QCOMPARE(arrangeBars(lying)[2].rect, QRectF(60, 5, 20, 40));
    }

    void barsAreSortedBySum() {
        QCOMPARE(orderOfBars({{1, 5, 2}, {1, 0, 9}}, 4, true), (std::vector<int>{2, 1, 0, 3}));
        QCOMPARE(orderOfBars({}, 2, true), (std::vector<int>{0, 1}));
    }

    void sharesAddUp() {
        std::mt19937 random(8);
        for (int i = 0; i < 500; ++i) {
            std::vector<double> values(1 + random() % 12);
            for (double& value : values)
                value = std::ldexp(double(random()), int(random() % 40) - 20);
            for (const int decimals : {0, 1}) {
                const auto shares = PieShares::percentages(values, decimals);
                const double sum = std::accumulate(shares.begin(), shares.end(), 0.0);
                QVERIFY(std::abs(sum - 100) < 1e-9);
            }
        }
        QCOMPARE(PieShares::percentages({1, 1, 1}), (std::vector<double>{34, 33, 33}));
        QCOMPARE(PieShares::percentages({0, 0}), (std::vector<double>{0, 0}));
        QCOMPARE(PieShares::percentages({-1, qQNaN(), 3, qInf()}),
                 (std::vector<double>{0, 0, 100, 0}));
        QCOMPARE(PieShares::percentages({DBL_MAX, DBL_MAX}), (std::vector<double>{50, 50}));
    }

    void sectorsMeet() {
        const auto slices = slicesOf({0.1, 30, qQNaN(), -2, 0.1, 0, 20.3, 0.2});
        std::vector<bool> visible(slices.size(), true);
        auto sectors = pieSectors(slices, visible, 0.015);
        QCOMPARE(sectors.size(), std::size_t(3)); // two, and others
        QCOMPARE(sectors.back().slice, -1);
        QCOMPARE(sectors.front().begin, 0.0);
        QCOMPARE(sectors.back().end, 1.0);
        for (std::size_t i = 1; i < sectors.size(); ++i)
            QCOMPARE(sectors[i].begin, sectors[i - 1].end);
        visible[0] = visible[4] = false;
        sectors = pieSectors(slices, visible, 0.015);
        QCOMPARE(sectors.back().slice, 7); // a single small one stays by itself
        QVERIFY(pieSectors(slicesOf({0, -1}), {true, true}, 0).empty());
        QCOMPARE(pieSectors(slicesOf({DBL_MAX, DBL_MAX}), {true, true}, 0)[0].end, 0.5);
    }

    void labelsOfSlicesMoveApart() {
        QCOMPARE(spreadLabels({10, 12, 50}, 10, 0, 100), (std::vector<double>{10, 20, 50}));
        QCOMPARE(spreadLabels({-5, 80, 85, 99}, 10, 0, 100), (std::vector<double>{0, 70, 80, 90}));
    }

    // Okabe and Ito's colours as another program made them seen, which gives up chroma otherwise.
    void knownColors_data() {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* ground, const char* colors) {
            QTest::newRow(ground) << QColor(QLatin1String(ground))
                                  << QString::fromLatin1(colors).split(QLatin1Char(' '));
        };
        row("#ffffff", "#0072b2 #d55e00 #009e73 #c5890b #3c9cd0 #cc79a7 #a0960d #949494");
        row("#232323", "#0072b2 #d55e00 #009e73 #e69f00 #56b4e9 #cc79a7 #f0e442 #999999");
        row("#535353", "#50aaee #fc813a #36b78b #e69f00 #56b4e9 #dd88b7 #f0e442 #a2a2a2");
    }
    void knownColors() {
        QFETCH(QColor, ground);
        QFETCH(QStringList, expected);
        ChartColorProvider provider;
        for (int i = 0; i < 8; ++i) {
            const QColor color = provider.color(QString(), i, ground);
            const QColor known(expected[i]);
            const int away = std::abs(color.red() - known.red()) +
                             std::abs(color.green() - known.green()) +
                             std::abs(color.blue() - known.blue());
            QVERIFY2(away <= 24, qPrintable(color.name() + QLatin1Char(' ') + known.name()));
        }
    }

    void colorsAreSeenOnAnyGround() {
        ChartColorProvider provider;
        for (int grey = 0; grey < 256; grey += 3)
            for (int i = 0; i < 8; ++i) {
                const QColor ground(grey, (grey * 2) % 256, 255 - grey);
                for (const QColor& each : {ground, QColor(grey, grey, grey)})
                    QVERIFY(contrastRatio(provider.color(QString(), i, each), each) >= 3);
            }
        provider.setColor(QStringLiteral("cache"), Qt::red);
        QCOMPARE(provider.color(QStringLiteral("cache"), 5, Qt::black), QColor(Qt::red));
        provider.setPalette({Qt::yellow});
        provider.setPalette({});
        QCOMPARE(provider.color(QString(), 17, Qt::black), QColor(Qt::yellow));
        QCOMPARE(provider.color(QString(), -1, Qt::black), QColor(Qt::yellow));
    }
};

KXUI_TEST(ChartValuesTest);
#include "ChartValuesTest.moc"
