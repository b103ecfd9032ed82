#include <KxUI/curves/Curves.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <array>
#include <sstream>

using Kestrel::UI::Curve;
using Kestrel::UI::Curves;

namespace {

// A curve of the constant value y.
Curve flat(float y) {
    Curve curve;
    curve.setKnot(0, {0, y, false});
    curve.setKnot(1, {1, y, false});
    return curve;
}

Curve inverse() {
    Curve curve;
    curve.setKnot(0, {0, 1, false});
    curve.setKnot(1, {1, 0, false});
    return curve;
}

QString text(const Curves& curves) {
    std::ostringstream stream;
    stream << curves;
    return QString::fromStdString(stream.str());
}

} // namespace

class CurvesTest : public QObject {
    Q_OBJECT

private slots:
    void slotsAndEquality() {
        Curves curves;
        QCOMPARE(curves.numCurves(), 0);
        for (int i = 0; i < 6; ++i)
            curves.addCurve(flat(float(i)));
        QCOMPARE(curves.numCurves(), 4);
        QCOMPARE(curves.curve(3), flat(3));
        QCOMPARE(Curves(9, 8, 2).numCurves(), 4);
        QCOMPARE(Curves(-1, 8, 2), Curves());

        Curves other = curves;
        QCOMPARE(other, curves);
        other.setCurve(3, Curve());
        QVERIFY(other != curves);
        QVERIFY(Curves(1, 8, 2) != Curves(2, 8, 2));
    }

    // Entry 1 of 5, an input of 0.25, through curves that give constants.
    void table_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("inverseMaster");
        QTest::addColumn<QList<int>>("expected");
        QTest::newRow("none") << 0 << false << QList<int>{16384, 16384, 16384, 16384};
        QTest::newRow("one for all") << 1 << false << QList<int>{0, 0, 0, 16384};
        QTest::newRow("red and green") << 2 << false << QList<int>{0, 32768, 16384, 16384};
        QTest::newRow("channels") << 3 << false << QList<int>{0, 32768, 65535, 16384};
        QTest::newRow("master") << 4 << true << QList<int>{65535, 32768, 0, 16384};
        QTest::newRow("neutral master") << 4 << false << QList<int>{0, 32768, 65535, 16384};
    }
    void table() {
        QFETCH(int, count);
        QFETCH(bool, inverseMaster);
        Curves curves;
        for (int i = 0; i < std::min(count, 3); ++i)
            curves.addCurve(flat(0.5F * float(i)));
        if (count == 4)
            curves.addCurve(inverseMaster ? inverse() : Curve());
        std::array<unsigned short, 20> table{};
        curves.buildRGBALUT(5, table.data());
        QTEST((QList<int>{table[4], table[5], table[6], table[7]}), "expected");
    }

    void textRoundTrip() {
        const Curves identities(2, 8, 2);
        QCOMPARE(text(identities), "[(0, 0), (1, 1)], [(0, 0), (1, 1)]");
        Curves read;
        std::istringstream same(text(identities).toStdString());
        same >> read;
        QCOMPARE(read, identities);

        std::istringstream fewer("[(0, 0.5)]");
        fewer >> read;
        QCOMPARE(text(read), "[(0, 0.5), (1, 1)], [(0, 0), (1, 1)]");
        std::istringstream more("[(0, 0)], [(0, 0)], [(0, 0)], [x(0, 0.25)], [(9, 9)]");
        more >> read;
        QCOMPARE(read.numCurves(), 4);
        QCOMPARE(read.curve(3).knot(0).y, 0.25F);
        QVERIFY(!more.fail());
        std::istringstream bad("[(?)]");
        bad >> read;
        QVERIFY(bad.fail());
    }
};

KXUI_TEST(CurvesTest);
#include "CurvesTest.moc"
