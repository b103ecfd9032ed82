#include <KxUI/charts/LineData_p.h>
#include <KxUI/charts/LineSpans_p.h>

#include <support/TestRegistry.h>

#include <cfloat>
#include <cmath>
#include <random>

using namespace Kestrel::UI;

namespace {

Extent slowExtent(const LineData& data, std::size_t begin, std::size_t end) {
    Extent extent;
    for (std::size_t i = begin; i < end; ++i)
        extent.add(data.y(i));
    return extent;
}

bool same(const Extent& a, const Extent& b) {
    return a.isEmpty() ? b.isEmpty() : a.lowest == b.lowest && a.highest == b.highest;
}

} // namespace

class LineDataTest : public QObject {
    Q_OBJECT

private slots:
    void extentsAreThoseOfThePoints() {
        std::mt19937 random(1);
        LineData grown;
        std::vector<double> xs;
        std::vector<double> ys;
        for (int i = 0; i < 20000; ++i) {
            xs.push_back(i);
            ys.push_back(random() % 50 == 0 ? qQNaN() : std::sin(i * 0.01) * double(random() % 99));
            QVERIFY(grown.append(xs.back(), ys.back()));
        }
        LineData assigned;
        assigned.assign(xs, ys);
        for (int i = 0; i < 500; ++i) {
            const std::size_t begin = random() % 20000;
            const std::size_t end = begin + random() % (20001 - begin);
            const Extent expected = slowExtent(assigned, begin, end);
            QVERIFY(same(assigned.extent(begin, end), expected));
            QVERIFY(same(grown.extent(begin, end), expected));
        }
        QVERIFY(assigned.indexBytes() * 20 < 20000 * 2 * sizeof(double));
    }

    void aCapacityKeepsTheNewest() {
        LineData data;
        data.setCapacity(10000);
        for (int i = 0; i < 100000; ++i) {
            data.append(i, i % 777);
            if (i % 9973 != 0)
                continue;
            QCOMPARE(data.size(), std::size_t(std::min(i + 1, 10000)));
            QCOMPARE(data.x(data.size() - 1), double(i));
            QVERIFY(same(data.extent(0, data.size()), slowExtent(data, 0, data.size())));
        }
        data.setCapacity(10);
        QCOMPARE(data.x(0), 99990.0);
        QCOMPARE(data.firstFrom(99995), std::size_t(5));
    }

    void whatIsRefused() {
        LineData data;
        QVERIFY(!data.append(qQNaN(), 1) && !data.append(qInf(), 1));
        QVERIFY(data.append(5, 1) && data.append(5, 2) && !data.append(4.9, 3));
        data.assign({3, qQNaN(), 1, -qInf(), 2}, {30, 0, 10, 0, 20, 7});
        QCOMPARE(data.size(), std::size_t(3));
        QCOMPARE(data.y(0), 10.0);
        QCOMPARE(data.y(2), 30.0);
        data.assign({1, 2}, {qQNaN(), qInf()});
        QVERIFY(data.extent(0, 2).isEmpty());
    }

    void searchFromAnyPlace() {
        std::mt19937 random(7);
        LineData data;
        double x = 0;
        for (int i = 0; i < 3000; ++i)
            data.append(x += double(random() % 3), 0);
        for (int i = 0; i < 2000; ++i) {
            const double wanted = double(random() % 3200) - 100;
            const std::size_t found = data.firstFrom(wanted);
            QVERIFY(found == data.size() || data.x(found) >= wanted);
            QVERIFY(found == 0 || data.x(found - 1) < wanted);
            const std::size_t hint = random() % (found + 1);
            QCOMPARE(data.firstFrom(wanted, hint), found);
            QCOMPARE(data.firstNear(wanted, hint, random() % 3200), found);
        }
    }

    // Against a slow drawing of every segment: each column covers what all segments cover of it.
    void spansAreWhatAllPointsCover() {
        std::mt19937 random(9);
        std::uniform_real_distribution<double> unit(0, 1);
        for (int seed = 0; seed < 60; ++seed) {
            LineData data;
            double x = -3;
            const double step = seed % 3 == 0 ? 8 : 0.2;
            while (x < 110)
                data.append(x += unit(random) * step, unit(random) < 0.05 ? qQNaN() : unit(random));
            const AxisScale across{0, 100, false, 0, 50};
            const AxisScale down{0, 1, false, 80, -80};
            std::vector<double> tops(50, 1e9);
            std::vector<double> bottoms(50, -1e9);
            for (std::size_t i = 1; i < data.size(); ++i) {
                const double x0 = across.pixel(data.x(i - 1));
                const double x1 = across.pixel(data.x(i));
                const double y0 = down.pixel(data.y(i - 1));
                const double y1 = down.pixel(data.y(i));
                for (int c = 0; c < 50; ++c) {
                    const double from = std::max(x0, double(c));
                    const double to = std::min(x1, double(c) + 1);
                    if (from > to || std::isnan(y0 + y1))
                        continue;
                    for (const double at : {from, to}) {
                        const double part = x1 > x0 ? (at - x0) / (x1 - x0) : 0;
                        const double y = y0 + (y1 - y0) * part;
                        tops[std::size_t(c)] = std::min(tops[std::size_t(c)], y);
                        bottoms[std::size_t(c)] = std::max(bottoms[std::size_t(c)], y);
                    }
                }
            }
            const auto spans = lineSpans(data, across, down, LineJoin::Straight, 0, 50);
            std::vector<LineSpan> ofColumns(50);
            for (const LineSpan& span : spans)
                ofColumns[std::size_t(span.column)] = span;
            for (std::size_t c = 0; c < 50; ++c) {
                // Points between two gaps are in the spans alone.
                if (tops[c] > 1e8)
                    continue;
                QVERIFY(ofColumns[c].top <= tops[c] + 1e-6);
                QVERIFY(ofColumns[c].bottom >= bottoms[c] - 1e-6);
                const bool isSparse = step > 1;
                if (isSparse) {
                    QVERIFY(ofColumns[c].top >= tops[c] - 1e-6);
                    QVERIFY(ofColumns[c].bottom <= bottoms[c] + 1e-6);
                }
            }
        }
    }

    void oddRanges() {
        LineData data;
        data.append(1, 1e308);
        data.append(2, -1e308);
        data.append(3, 0);
        const AxisScale across{1, 3, false, 0, 100};
        const AxisScale down{-DBL_MAX / 2, DBL_MAX / 2, false, 100, -100};
        for (const LineSpan& span : lineSpans(data, across, down, LineJoin::Straight, 0, 100))
            QVERIFY(span.top >= -1e7 && span.bottom <= 1e7 && span.top <= span.bottom);
        const AxisScale log{0.1, 10, true, 100, -100};
        QVERIFY(lineRuns(data, across, log, LineJoin::Straight, 100).size() <= 2);
        lineSpans(data, across, log, LineJoin::Straight, 0, 100);
        QVERIFY(lineSpans({}, across, down, LineJoin::Straight, 0, 100).empty());
    }
};

KXUI_TEST(LineDataTest);
#include "LineDataTest.moc"
