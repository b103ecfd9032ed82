#include <KxUI/curves/Curve.h>
#include <KxUI/curves/Curves.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cmath>
#include <locale>
#include <sstream>
#include <vector>

using namespace Kestrel::UI;

namespace {

Curve curveThrough(const std::vector<Knot>& knots) {
    Curve curve(Curve::MaximumKnots, unsigned(knots.size()));
    for (int i = 0; i < curve.numKnots(); ++i)
        curve.setKnot(i, knots[std::size_t(i)]);
    return curve;
}

QString text(const Curve& curve, int precision = 6) {
    std::ostringstream stream;
    stream.precision(precision);
    stream << curve;
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
    void construction() {
        QVERIFY(Curve(8, 2).isIdentity());
        QCOMPARE(text(Curve(8, 3)), "(0, 0), (0.5, 0.5), (1, 1)");
        QCOMPARE(text(Curve(2, 9)), "(0, 0), (1, 1)");
        QCOMPARE(Curve(99, 99).numKnots(), 8);
        QCOMPARE(text(Curve(8, 0)), "");
        QVERIFY(std::isnan(Curve(8, 1).knot(0).x));
        QVERIFY(Curve(8, 1) != Curve(8, 1));
    }

    void identityTolerance() {
        const float under = 0.00009F;
        QVERIFY(curveThrough({{under, -under}, {1 - under, 1 + under}}).isIdentity());
        for (const float moved : {0.0001F, -0.0001F}) {
            QVERIFY(!curveThrough({{moved, 0}, {1, 1}}).isIdentity());
            QVERIFY(!curveThrough({{0, 0}, {1, 1 + moved}}).isIdentity());
        }
        QVERIFY(!Curve(8, 3).isIdentity());
    }

    void insertAndRemove() {
        Curve curve(3, 2);
        curve.removeKnotAt(0);
        curve.insertKnotAt(3);
        QCOMPARE(curve, Curve(3, 2));
        curve.insertKnotAt(1);
        QCOMPARE(text(curve), "(0, 0), (1, 1), (1, 1)");
        curve.setKnot(1, {0.5F, 0.75F, true});
        curve.insertKnotAt(0);
        curve.removeKnotAt(0);
        QCOMPARE(curve, curveThrough({{0.5F, 0.75F}, {1, 1}}));
        QVERIFY(curve.knot(0).selected && !curve.knot(2).selected);
    }

    // Worked by hand: the only unknown second derivative of the hill is -12. The halves of the step
    // are straight.
    void values() {
        const Curve hill = curveThrough({{0, 0}, {0.5F, 1}, {1, 0}});
        QCOMPARE(hill.valueAt(0.25F), 0.6875F);
        QCOMPARE(hill.valueAt(0.5F), 1.0F);
        const Curve step = curveThrough({{0.2F, 0.3F}, {0.5F, 0.3F}, {0.5F, 0.8F}, {0.9F, 0.6F}});
        const struct {
            float x, y;
            int span;
        } expected[]{{-1, 0.3F, -1},  {0.2F, 0.3F, 0}, {0.49F, 0.3F, 0}, {0.5F, 0.8F, 2},
                     {0.7F, 0.7F, 2}, {0.9F, 0.6F, 2}, {7, 0.6F, 2}};
        for (const auto& each : expected) {
            QCOMPARE(step.valueAt(each.x), each.y);
            QCOMPARE(step.span(each.x), each.span);
        }
        QCOMPARE(step.span(NAN), -1);
        QCOMPARE(Curve(8, 0).valueAt(0.5F), 0.0F);
    }

    void tablesEqualValues() {
        for (const Curve& curve :
             {Curve(8, 8), Curve(8, 0),
              curveThrough({{0.25F, 0.5F}, {0.3F, 0.1F}, {0.30001F, 0.9F}, {0.8F, 0.2F}}),
              curveThrough({{0, 0}, {0.5F, 1}, {0.5F, 0}, {0.5F, 1}, {1, 0}}),
              curveThrough({{-2, 5}, {0.1F, 0.5F}, {4, -3}})}) {
            for (const unsigned int size : {0U, 1U, 2U, 33U, 70001U})
                QCOMPARE(badEntries(curve, size), 0);
        }
    }

    void codes() {
        Curve().buildLUT(8, nullptr);
        Curve().buildRGBALUT(8, nullptr, 4);
        Kestrel::UI::Curves().buildRGBALUT(8, nullptr);
        std::vector<unsigned short> table(7, 77);
        curveThrough({{0, -0.5F}, {1, 1.5F}}).buildRGBALUT(3, table.data(), 3);
        QCOMPARE(table, (std::vector<unsigned short>{0, 77, 77, 32768, 77, 77, 65535}));
        Curve(8, 1).buildRGBALUT(1, table.data(), 1);
        QCOMPARE(int(table[0]), 0);
    }

    void reading_data() {
        const Kestrel::Test::Columns<QString, QString, bool> row("input", "expected", "good");
        row("tight", "(0.25, 0.5),(0.75,1)", "(0.25, 0.5), (0.75, 1)", true);
        row("too many", "(0,0)(1,1)(2,2)(3,3)", "(0, 0), (1, 1), (2, 2)", true);
        row("too few", "(0.5, 0), (3, 4", "(0.5, 0), (1, 1)", true);
        row("not numbers", "(0.5, 0), (a, b), (3, 3)", "(0.5, 0), (1, 1)", false);
    }
    void reading() {
        QFETCH(QString, input);
        Curve curve(3, 2);
        std::istringstream stream(input.toStdString());
        stream >> curve;
        QTEST(text(curve), "expected");
        QTEST(!stream.fail(), "good");
    }

    // A host may run in a language with decimal commas.
    void textIgnoresTheLocale() {
        struct Commas : std::numpunct<char> {
            char do_decimal_point() const override { return ','; }
        };
        const std::locale previous = std::locale::global(std::locale({}, new Commas));
        const Curve written = curveThrough({{0.1F, 1.0F / 3}, {0.7F, -12345.5F}});
        std::istringstream stream(text(written, 9).toStdString());
        Curve read(8, 0);
        stream >> read;
        std::locale::global(previous);
        QCOMPARE(read, written);
        QVERIFY(stream.str().find("0.100000001, 0.3333") != std::string::npos);
    }
};

KXUI_TEST(CurveTest);
#include "CurveTest.moc"
