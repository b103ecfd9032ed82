#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneCurve.h>

#include <support/TestRegistry.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace Kestrel::UI;

namespace {

using Counts = std::vector<std::uint32_t>;

CountGrid gridOf(const Counts& counts, int columns, int rows) {
    CountGrid grid;
    grid.counts = counts.data();
    grid.columns = columns;
    grid.rows = rows;
    grid.rowStep = columns;
    return grid;
}

std::vector<float> densities(const IntensityGrid& grid) {
    std::vector<float> all;
    for (int y = 0; y < grid.height(); ++y)
        all.insert(all.end(), grid.row(y), grid.row(y) + grid.width());
    return all;
}

} // namespace

class IntensityGridTest : public QObject {
    Q_OBJECT

private slots:
    void sumsByHand() {
        const Counts counts{1, 2, 3, 4, 5, 6};
        const CountGrid grid = gridOf(counts, 3, 2);
        QCOMPARE(densities(IntensityGrid::fromCounts(grid, 3, 2)),
                 (std::vector<float>{1, 2, 3, 4, 5, 6}));
        // A pixel and a half each: (1 + 2/2) / 1.5 and so on.
        QCOMPARE(densities(IntensityGrid::fromCounts(grid, 2, 2)),
                 (std::vector<float>{2 / 1.5F, 4 / 1.5F, 6.5F / 1.5F, 8.5F / 1.5F}));
        QCOMPARE(densities(IntensityGrid::fromCounts(grid, 1, 1)), std::vector<float>{3.5F});
    }

    // By columns, upside down: the same picture as by rows.
    void anyOrderInMemory() {
        std::mt19937 random(2);
        Counts byRows(13 * 7);
        for (std::uint32_t& each : byRows)
            each = std::uint32_t(random() % 3 ? 0 : random() % 100);
        Counts byColumns(byRows.size());
        for (std::size_t y = 0; y < 7; ++y)
            for (std::size_t x = 0; x < 13; ++x)
                byColumns[x * 7 + (6 - y)] = byRows[y * 13 + x];
        CountGrid turned = gridOf(byColumns, 13, 7);
        turned.counts += 6;
        turned.columnStep = 7;
        turned.rowStep = -1;
        for (const auto& [width, height] : {std::pair(5, 3), {13, 7}, {40, 11}, {1, 1}, {6, 50}})
            QCOMPARE(densities(IntensityGrid::fromCounts(turned, width, height)),
                     densities(IntensityGrid::fromCounts(gridOf(byRows, 13, 7), width, height)));
    }

    void evenSpreadHasNoBands() {
        const Counts counts(std::size_t(97 * 31), 5);
        CountGrid grid = gridOf(counts, 97, 31);
        grid.expected = 5;
        for (int width = 1; width < 200; width += 7)
            for (const float each : densities(IntensityGrid::fromCounts(grid, width, 40)))
                QVERIFY(std::abs(each - 1) < 1e-6F);
    }

    void columnsOfUnequalParts() {
        const Counts counts{2, 1, 1, 2, 1, 1};
        const double expected[]{2, 1, 1};
        CountGrid grid = gridOf(counts, 3, 2);
        grid.expectedOfColumns = expected;
        for (const int width : {1, 2, 3, 5})
            for (const float each : densities(IntensityGrid::fromCounts(grid, width, 1)))
                QVERIFY(std::abs(each - 1) < 1e-6F);
    }

    // One hit among millions is some light everywhere that it may land.
    void singleHitsAreSeen() {
        Counts counts(std::size_t(3840 * 256));
        const ToneCurve tone;
        for (const std::size_t place :
             {std::size_t(0), counts.size() / 2 + 77, counts.size() - 1}) {
            counts[place] = 1;
            CountGrid grid = gridOf(counts, 3840, 256);
            grid.expected = 2160.0 / 256;
            const auto all = densities(IntensityGrid::fromCounts(grid, 200, 150));
            counts[place] = 0;
            QVERIFY(tone.light(double(*std::max_element(all.begin(), all.end()))) >= 0.12);
            QVERIFY(std::count_if(all.begin(), all.end(), [](float each) { return each > 0; }) <=
                    4);
        }
    }

    void nothing() {
        const Counts counts{1};
        QVERIFY(IntensityGrid::fromCounts({}, 10, 10).isEmpty());
        QVERIFY(IntensityGrid::fromCounts(gridOf(counts, 1, 1), 0, 10).isEmpty());
        QVERIFY(IntensityGrid::fromCounts(gridOf(counts, 0, 1), 3, 10).isEmpty());
        QVERIFY(IntensityGrid(2, 2, std::vector<float>(3)).isEmpty());
        CountGrid unexpected = gridOf(counts, 1, 1);
        unexpected.expected = 0;
        QCOMPARE(densities(IntensityGrid::fromCounts(unexpected, 1, 1)), std::vector<float>{1});
    }

    void tones() {
        ToneCurve tone;
        QCOMPARE(tone.light(16), 1.0);
        QCOMPARE(tone.light(1e9), 1.0);
        QVERIFY(std::abs(tone.light(1) - 1 / std::log2(17)) < 1e-12);
        QCOMPARE(tone.light(1e-9), 0.12);
        tone.least = 0;
        QVERIFY(tone.light(1e-9) < 1e-6);
        tone.kind = ToneCurve::Linear;
        tone.brightness = 2;
        QCOMPARE(tone.light(1), 0.5);
        tone.brightness = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(tone.light(4), 0.5);
        for (const double none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
            QCOMPARE(tone.light(none), 0.0);
    }
};

KXUI_TEST(IntensityGridTest);
#include "IntensityGridTest.moc"
