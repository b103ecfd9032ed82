#include <KxUI/curves/Curves.h>

#include <support/TestRegistry.h>

#include <array>
#include <sstream>

using namespace Kestrel::UI;

namespace {

Curve line(float from, float to) {
    Curve curve;
    curve.setKnot(0, {0, from, false});
    curve.setKnot(1, {1, to, false});
    return curve;
}

} // namespace

class CurvesTest : public QObject {
    Q_OBJECT

private slots:
    void slotsAndEquality() {
        Curves curves;
        for (int i = 0; i < 6; ++i)
            curves.addCurve(line(float(i), 0));
        QCOMPARE(curves.numCurves(), 4);
        QCOMPARE(curves.curve(3), line(3, 0));
        Curves other = curves;
        other.setCurve(3, Curve());
        QVERIFY(other != curves && Curves(1, 8, 2) != Curves(2, 8, 2));
    }

    // Entry 1 of 5, an input of 0.25, through channels that give constants, and a master.
    void table() {
        const QList<QList<int>> expected{{16384, 16384, 16384, 16384},
                                         {0, 0, 0, 16384},
                                         {0, 32768, 16384, 16384},
                                         {0, 32768, 65535, 16384},
                                         {65535, 32768, 0, 16384}};
        Curves curves;
        for (int count = 0; count <= 4; ++count) {
            std::array<unsigned short, 20> table{};
            curves.buildRGBALUT(5, table.data());
            QCOMPARE((QList<int>{table[4], table[5], table[6], table[7]}), expected[count]);
            curves.addCurve(count < 3 ? line(0.5F * float(count), 0.5F * float(count))
                                      : line(1, 0));
        }
    }

    void text() {
        const Curves identities(2, 8, 2);
        std::stringstream written;
        written << identities;
        QCOMPARE(written.str().c_str(), "[(0, 0), (1, 1)], [(0, 0), (1, 1)]");
        Curves read;
        std::istringstream same(written.str());
        same >> read;
        QCOMPARE(read, identities);

        std::istringstream more("[(0, 0)], [(0, 0)], [(0, 0)], [x(0, 0.25)], [(9, 9)]");
        more >> read;
        QVERIFY(!more.fail());
        QCOMPARE(read.curve(3), line(0.25F, 1));
        std::istringstream bad("[(?)]");
        bad >> read;
        QVERIFY(bad.fail());
    }
};

KXUI_TEST(CurvesTest);
#include "CurvesTest.moc"
