#include <KxUI/curves/Curve.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <vector>

using Kestrel::UI::Curve;
using Kestrel::UI::Knot;

namespace {

Curve curveThrough(std::initializer_list<Knot> knots) {
    Curve curve(Curve::MaximumKnots, unsigned(knots.size()));
    int index = 0;
    for (const Knot& knot : knots)
        curve.setKnot(index++, knot);
    return curve;
}

template <class Value>
QString text(const Value& value, int precision = 6) {
    std::ostringstream stream;
    stream.precision(precision);
    stream << value;
    return QString::fromStdString(stream.str());
}

// How many entries are infinite, not a number, or other than `valueAt`; -1 if memory past the table
// was touched.
int badEntries(const Curve& curve, unsigned int size) {
    std::vector<float> table(size + 1, -7.0F);
    curve.buildLUT(size, table.data());
    int bad = 0;
    for (unsigned int i = 0; i < size; ++i) {
        const float expected = curve.valueAt(size == 1 ? 0.0F : float(i) / float(size - 1));
        bad += !std::isfinite(table[i]) || table[i] != expected;
    }
    return table[size] == -7.0F ? bad : -1;
}

} // namespace

class CurveTest : public QObject {
    Q_OBJECT

private slots:
    void construction_data() {
        QTest::addColumn<unsigned>("capacity");
        QTest::addColumn<unsigned>("count");
        QTest::addColumn<QString>("expected");
        QTest::newRow("identity") << 8U << 2U << "(0, 0), (1, 1)";
        QTest::newRow("spaced") << 8U << 5U
                                << "(0, 0), (0.25, 0.25), (0.5, 0.5), (0.75, 0.75), (1, 1)";
        QTest::newRow("beyond the capacity") << 3U << 9U << "(0, 0), (0.5, 0.5), (1, 1)";
        QTest::newRow("beyond eight") << 99U << 0U << "";
    }
    void construction() {
        QFETCH(unsigned, capacity);
        QFETCH(unsigned, count);
        const Curve curve(capacity, count);
        QTEST(text(curve), "expected");
        QCOMPARE(curve.maxKnots(), int(std::min(capacity, 8U)));
        QCOMPARE(curve.isIdentity(), count == 2);
    }

    void aSingleKnotIsNotANumber() {
        const Curve curve(8, 1);
        QVERIFY(std::isnan(curve.knot(0).x) && std::isnan(curve.knot(0).y));
        QVERIFY(curve != curve);
        QCOMPARE(curve.span(0.5F), -1);
    }

    void identityTolerance() {
        const float under = 0.00009F;
        QVERIFY(curveThrough({{under, -under}, {1 - under, 1 + under}}).isIdentity());
        for (const float moved : {0.0001F, -0.0001F}) {
            QVERIFY(!curveThrough({{moved, 0}, {1, 1}}).isIdentity());
            QVERIFY(!curveThrough({{0, moved}, {1, 1}}).isIdentity());
            QVERIFY(!curveThrough({{0, 0}, {1 + moved, 1}}).isIdentity());
            QVERIFY(!curveThrough({{0, 0}, {1, 1 + moved}}).isIdentity());
        }
        QVERIFY(!Curve(8, 3).isIdentity());
    }

    void insertAndRemove() {
        Curve curve(3, 2);
        curve.removeKnotAt(0);
        curve.insertKnotAt(3);
        curve.insertKnotAt(-1);
        QCOMPARE(curve, Curve(3, 2));

        curve.insertKnotAt(1);
        QCOMPARE(text(curve), "(0, 0), (1, 1), (1, 1)");
        curve.setKnot(1, {0.5F, 0.75F, true});
        curve.insertKnotAt(0);
        QCOMPARE(text(curve), "(0, 0), (0.5, 0.75), (1, 1)");

        Curve unselected = curve;
        unselected.setKnot(1, {0.5F, 0.75F, false});
        QCOMPARE(unselected, curve);
        curve.removeKnotAt(0);
        QCOMPARE(text(curve), "(0.5, 0.75), (1, 1)");
        QVERIFY(curve.knot(0).selected && !curve.knot(2).selected);
    }

    void spans() {
        const Curve curve = curveThrough({{0.1F, 0}, {0.4F, 1}, {0.4F, 0}, {0.9F, 1}});
        const std::vector<std::pair<float, int>> expected{{0.05F, -1}, {0.1F, 0}, {0.39F, 0},
                                                          {0.4F, 2},   {0.8F, 2}, {0.9F, 2},
                                                          {7.0F, 2},   {NAN, -1}};
        for (const auto& [x, span] : expected)
            QCOMPARE(curve.span(x), span);
    }

    // Worked by hand: the only unknown second derivative of the first curve is -12. The two halves
    // of the second are straight on either side of a step.
    void values() {
        const Curve hill = curveThrough({{0, 0}, {0.5F, 1}, {1, 0}});
        QCOMPARE(hill.valueAt(0.25F), 0.6875F);
        QCOMPARE(hill.valueAt(0.5F), 1.0F);
        const Curve step = curveThrough({{0.2F, 0.3F}, {0.5F, 0.3F}, {0.5F, 0.8F}, {0.9F, 0.6F}});
        QCOMPARE(step.valueAt(-1.0F), 0.3F);
        QCOMPARE(step.valueAt(0.49F), 0.3F);
        QCOMPARE(step.valueAt(0.5F), 0.8F);
        QCOMPARE(step.valueAt(0.7F), 0.7F);
        QCOMPARE(step.valueAt(2.0F), 0.6F);
        QCOMPARE(Curve(8, 0).valueAt(0.5F), 0.0F);
    }

    // Two knots that are merely near make an edge that a float still holds.
    void tablesEqualValues() {
        const std::vector<Curve> curves{
            Curve(),
            Curve(8, 8),
            Curve(8, 0),
            curveThrough({{0.25F, 0.5F}, {0.3F, 0.1F}, {0.30001F, 0.9F}, {0.8F, 0.2F}}),
            curveThrough({{0, 0}, {0.5F, 1}, {0.5F, 0}, {0.5F, 1}, {1, 0}}),
            curveThrough({{0.6F, 0.1F}, {0.2F, 0.5F}, {0.9F, 0.3F}, {0.7F, 0.7F}}),
            curveThrough({{-2, 5}, {0.1F, 0.5F}, {4, -3}}),
        };
        for (const Curve& curve : curves) {
            for (const unsigned int size : {0U, 1U, 2U, 3U, 33U, 1024U, 70001U})
                QCOMPARE(badEntries(curve, size), 0);
        }
    }

    // Any finite knots in any order, many of them coincident or nearly so.
    void fuzzedKnotsStayFinite() {
        std::mt19937 random(7);
        const auto upTo = [&](unsigned int limit) { return unsigned(random() % (limit + 1)); };
        const auto coordinate = [&] {
            const float unit = float(upTo(1000)) / 1000.0F;
            switch (upTo(3)) {
            case 0:
                return unit;
            case 1:
                return float(upTo(4)) / 4.0F;
            case 2:
                return std::nextafter(float(upTo(4)) / 4.0F, unit);
            default:
                return std::ldexp(unit - 0.5F, int(upTo(200)) - 120);
            }
        };
        for (int round = 0; round < 20000; ++round) {
            Curve curve(8, 2 + upTo(6));
            for (int i = 0; i < curve.numKnots(); ++i)
                curve.setKnot(i, {coordinate(), coordinate(), false});
            QVERIFY2(badEntries(curve, 2 + upTo(60)) == 0, qPrintable(text(curve, 9)));
        }
    }

    void codes() {
        const Curve curve = curveThrough({{0, -0.5F}, {1, 1.5F}});
        std::vector<unsigned short> table(15, 77);
        curve.buildRGBALUT(5, table.data(), 3);
        const std::vector<unsigned short> expected{0,  77,    77, 0,  77,    77, 32768, 77,
                                                   77, 65535, 77, 77, 65535, 77, 77};
        QCOMPARE(table, expected);
        Curve(8, 1).buildRGBALUT(2, table.data(), 1);
        QCOMPARE(int(table[1]), 0);
    }

    void reading_data() {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("good");
        QTest::newRow("tight and loose") << "(0.25, 0.5),(0.75,1)"
                                         << "(0.25, 0.5), (0.75, 1)" << true;
        QTest::newRow("more than fit") << "(0, 0), (1, 1), (2, 2), (3, 3)"
                                       << "(0, 0), (1, 1), (2, 2)" << true;
        QTest::newRow("fewer than held") << "(0.5, 0)"
                                         << "(0.5, 0), (1, 1)" << true;
        QTest::newRow("unclosed") << "(0.5, 0), (3, 4"
                                  << "(0.5, 0), (1, 1)" << true;
        QTest::newRow("not numbers") << "(0.5, 0), (a, b), (3, 3)"
                                     << "(0.5, 0), (1, 1)" << false;
        QTest::newRow("empty") << ""
                               << "(0, 0), (1, 1)" << true;
    }
    void reading() {
        QFETCH(QString, input);
        Curve curve(3, 2);
        std::istringstream stream(input.toStdString());
        stream >> curve;
        QTEST(text(curve), "expected");
        QTEST(!stream.fail(), "good");
    }

    // A host that runs in a language with decimal commas, or groups of thousands.
    void textIgnoresTheLocale() {
        struct Commas : std::numpunct<char> {
            char do_decimal_point() const override { return ','; }
            char do_thousands_sep() const override { return '.'; }
            std::string do_grouping() const override { return "\3"; }
        };
        const std::locale previous = std::locale::global(std::locale({}, new Commas));
        const Curve written = curveThrough({{0.1F, 1.0F / 3}, {0.7F, -12345.5F}});
        const QString asText = text(written, std::numeric_limits<float>::max_digits10);
        Curve read(8, 0);
        std::istringstream stream(asText.toStdString());
        stream >> read;
        std::locale::global(previous);
        QCOMPARE(asText, "(0.100000001, 0.333333343), (0.699999988, -12345.5)");
        QCOMPARE(read, written);
    }
};

KXUI_TEST(CurveTest);
#include "CurveTest.moc"
