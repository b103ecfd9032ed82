#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <memory>
#include <random>

using namespace Kestrel::UI;
using Move = CurveModel::Move;
using Moves = std::vector<Move>;
using Shape = KeyCurve::Shape;
Q_DECLARE_METATYPE(Moves)

namespace {

constexpr double Infinite = HUGE_VAL;

std::unique_ptr<CurveModel> modelOf(bool hasKeys, const QByteArray& text) {
    if (!hasKeys) {
        auto model = std::make_unique<CurvesModel>();
        model->load(0, text);
        return model;
    }
    auto model = std::make_unique<KeyCurveModel>();
    KeyCurve curve;
    curve.setText({text.constData(), std::size_t(text.size())});
    model->addCurve(QStringLiteral("Level"), curve);
    return model;
}

std::vector<double> samplesOf(const CurveModel& model, double from, double to) {
    std::vector<double> samples(2001);
    model.sample(0, from, to, int(samples.size()), samples.data());
    return samples;
}

double largestDifference(const std::vector<double>& a, const std::vector<double>& b) {
    double most = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

} // namespace

class CurveModelsTest : public QObject {
    Q_OBJECT

private slots:
    void moves_data() {
        const Kestrel::Test::Columns<bool, QByteArray, Moves, QByteArray> row("keys", "before",
                                                                              "moves", "after");
        const QByteArray three = "(0, 0), (0.5, 0.5), (1, 1)";
        row("one", false, three, {{0, 1, .25, .75}}, "(0, 0), (0.25, 0.75), (1, 1)");
        row("out of the square", false, three, {{0, 1, .25, 1.5}}, "");
        row("past its neighbour", false, three, {{0, 1, 1.0, .5}}, "");
        row("too near", false, three, {{0, 1, .999, .5}}, "");
        row("all or nothing", false, three, {{0, 1, .25, .75}, {0, 2, 2, 1}}, "");
        row("no such knot", false, three, {{0, 3, .25, .75}}, "");
        row("not a number", false, three, {{0, 1, std::nan(""), .75}}, "");
        row("outside before", false, "(0, 0), (0.5, 1.5), (1, 1)", {{0, 1, .25, 1.5}},
            "(0, 0), (0.25, 1.5), (1, 1)");
        row("further outside", false, "(0, 0), (0.5, 1.5), (1, 1)", {{0, 1, .25, 1.6}}, "");
        row("keys", true, three, {{0, 1, .25, 7}, {0, 2, 900, -3}}, "(0, 0), (0.25, 7), (900, -3)");
        row("both at once, past where one was", true, three, {{0, 1, 5, .5}, {0, 2, 6, 1}},
            "(0, 0), (5, 0.5), (6, 1)");
        row("keys at one place", true, three, {{0, 1, 1, 1}}, "");
        row("too large", true, three, {{0, 2, 1e200, 1}}, "");
    }

    void moves() {
        QFETCH(bool, keys);
        QFETCH(QByteArray, before);
        QFETCH(Moves, moves);
        QFETCH(QByteArray, after);
        const auto model = modelOf(keys, before);
        const QSignalSpy told(model.get(), &CurveModel::knotsChanged);
        QCOMPARE(model->move(moves), !after.isEmpty());
        QCOMPARE(model->save(0), after.isEmpty() ? before : after);
        QCOMPARE(told.count(), after.isEmpty() ? 0 : 1);
    }

    // What was told is all that looks other, and no more than the neighbours where shapes are local.
    void tellsWhatLooksOther_data() { Kestrel::Test::addSeeds(300); }

    void tellsWhatLooksOther() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        std::vector<KeyCurve::Key> keys(12);
        const bool isLinear = seed % 4 == 0;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            keys[i].x = double(i) + 0.5 * unit(random);
            keys[i].y = unit(random);
            keys[i].slopeIn = unit(random);
            keys[i].slopeOut = unit(random);
            keys[i].broken = random() % 2 == 0;
            keys[i].shape = isLinear ? Shape::Linear : Shape(random() % 6);
        }
        KeyCurveModel model;
        model.addCurve(QString(), KeyCurve(keys));
        const std::vector<double> before = samplesOf(model, -2, 14);
        const KeyCurve was = model.keyCurve(0);
        const QSignalSpy told(&model, &CurveModel::knotsChanged);
        const int knot = int(random() % keys.size());
        const KeyCurve::Key key = keys[std::size_t(knot)];
        if (isLinear || seed % 4 == 1)
            QVERIFY(model.move({{0, knot, key.x + 0.1, key.y + 0.2}}));
        else if (seed % 4 == 2)
            QVERIFY(model.setShape(0, {knot}, int(random() % 6)));
        else
            QVERIFY(model.setSlopes(0, knot, unit(random), unit(random), random() % 2 == 0));
        const std::vector<double> after = samplesOf(model, -2, 14);
        if (told.isEmpty()) {
            QVERIFY(was == model.keyCurve(0));
            return;
        }
        const int first = told.first().at(1).toInt();
        const int last = told.first().at(2).toInt();
        QVERIFY(first >= 0 && last < int(keys.size()) && first <= last);
        if (isLinear)
            QVERIFY(first >= knot - 1 && last <= knot + 1);
        for (std::size_t i = 0; i < before.size(); ++i) {
            const double x = -2 + 16.0 * double(i) / 2000;
            const bool isInside = (first == 0 || x >= keys[std::size_t(first)].x) &&
                                  (last + 1 == int(keys.size()) || x <= keys[std::size_t(last)].x);
            QVERIFY(isInside || std::abs(before[i] - after[i]) < 1e-12);
        }
    }

    void addsAndRemoves_data() {
        const Kestrel::Test::Columns<bool, QByteArray, QPointF, int> row("keys", "before", "place",
                                                                         "index");
        row("between", false, "(0, 0), (1, 1)", {.5, .9}, 1);
        row("beyond the square", false, "(0, 0), (1, 1)", {-1, -1}, -1);
        row("before the first", false, "(0.5, 0), (1, 1)", {-1, 2}, 0);
        row("no room", false, "(0, 0), (.25, 1), (.253, 0), (1, 1)", {.2512, .5}, -1);
        row("full", false, "(0,0),(.1,0),(.2,0),(.3,0),(.4,0),(.5,0),(.6,0),(1,1)", {.8, 0}, -1);
        row("first key", true, "()", {5, 5}, 0);
        row("behind the last key", true, "(0, 0)", {5, 5}, 1);
        row("where a key is", true, "(0, 0), (1, 1)", {1, 5}, -1);
        row("nowhere", true, "(0, 0), (1, 1)", {std::nan(""), 5}, -1);
        row("too far", true, "(0, 0), (1, 1)", {Infinite, 5}, -1);
    }

    void addsAndRemoves() {
        QFETCH(bool, keys);
        QFETCH(QByteArray, before);
        QFETCH(QPointF, place);
        QFETCH(int, index);
        const auto model = modelOf(keys, before);
        const QByteArray start = model->save(0);
        const int count = model->knots(0);
        QCOMPARE(model->add(0, place.x(), place.y()), index);
        QCOMPARE(model->knots(0), count + (index < 0 ? 0 : 1));
        if (index >= 0)
            QCOMPARE(model->remove(0, {index}), keys || count >= 2);
        if (index >= 0 && count >= 2)
            QCOMPARE(model->save(0), start);
        QVERIFY(!model->remove(0, {0, 0}));
        QVERIFY(!model->remove(0, {-1}));
        QCOMPARE(model->remove(0, {0, 1}), model->knots(0) >= (keys ? 2 : 4));
    }

    // A knot on the line, and slopes of its own for a piece, leave the line where it is. A natural
    // run that is cut in two bends anew.
    void keepsTheLine_data() { Kestrel::Test::addSeeds(60); }

    void keepsTheLine() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        std::vector<KeyCurve::Key> keys(6);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            keys[i].x = double(i) + 0.5 * unit(random);
            keys[i].y = unit(random);
            keys[i].shape = seed % 3 == 0 ? Shape::Natural : Shape(1 + random() % 3);
        }
        KeyCurveModel model;
        model.addCurve(QString(), KeyCurve(keys));
        const std::vector<double> before = samplesOf(model, keys.front().x, keys.back().x);
        QVERIFY(model.addOnLine(0, 1 + 3 * unit(random)) > 0);
        if (seed % 3 != 0)
            QVERIFY(model.setShape(0, {1, 2, 4}, int(Shape::Free)));
        const CurveModel::Knot knot = model.knot(0, 3);
        if (seed % 3 != 0)
            QVERIFY(model.setSlopes(0, 3, knot.slopeIn, knot.slopeOut, true));
        const std::vector<double> after = samplesOf(model, keys.front().x, keys.back().x);
        QVERIFY(largestDifference(before, after) < 1e-12);
        QVERIFY(model.setSlopes(0, 3, 1, 2, true));
        QCOMPARE(model.knot(0, 3).slopeIn, 1.0);
        QCOMPARE(model.knot(0, 3).slopeOut, 2.0);
    }

    void selections() {
        for (const bool hasKeys : {false, true}) {
            const auto model = modelOf(hasKeys, "(0, 0), (0.2, 0), (0.4, 0), (1, 1)");
            const QSignalSpy knots(model.get(), &CurveModel::knotsChanged);
            const QSignalSpy told(model.get(), &CurveModel::selectionChanged);
            const auto selected = [&](int first, int last, CurveModel::SelectionMode mode) {
                model->select(0, first, last, mode);
                return model->selectedKnots(0);
            };
            QCOMPARE(selected(1, 2, CurveModel::SelectOnly), (std::vector<int>{1, 2}));
            QCOMPARE(selected(3, 3, CurveModel::SelectAdd), (std::vector<int>{1, 2, 3}));
            QCOMPARE(selected(0, 1, CurveModel::SelectToggle), (std::vector<int>{0, 2, 3}));
            QCOMPARE(selected(2, 9, CurveModel::SelectRemove), (std::vector<int>{0}));
            QCOMPARE(told.count(), 4);
            QCOMPARE(selected(0, 0, CurveModel::SelectOnly), (std::vector<int>{0}));
            QCOMPARE(told.count(), 4);
            const QByteArray saved = model->save(0);
            QCOMPARE(selected(0, -1, CurveModel::SelectOnly), std::vector<int>());
            QVERIFY(knots.isEmpty());
            QVERIFY(model->load(0, saved));
            QCOMPARE(model->selectedKnots(0), std::vector<int>{0});
            QVERIFY(knots.isEmpty());
        }
    }

    void loads_data() {
        const Kestrel::Test::Columns<bool, QByteArray, QByteArray> row("keys", "bytes", "after");
        row("nothing", true, "", "");
        row("no text", false, "knots", "");
        row("one number", false, "(0, 0), (1)", "");
        row("cut short", true, "(0, 0), (1, 1", "");
        row("what follows", true, "(0, 0) and more", "");
        row("beyond floats", false, "(0, 0), (1e60, 1)", "");
        row("not a number", true, "(0, nan)", "");
        row("too many", false, "(0,0),(.1,0),(.2,0),(.3,0),(.4,0),(.5,0),(.6,0),(.7,0),(1,1)", "");
        row("spaces", true, " ( +0.5 ,\n1e-3 ) ", "(0.5, 0.001)");
        row("words", true, "(0, 0, linear), (1, 1, out 2, in -1, broken, free) after mirror",
            "(0, 0, linear), (1, 1, free, in -1, out 2, broken) after mirror");
        row("words of keys", false, "(0, 0, linear), (1, 1, free, out 2)", "(0, 0), (1, 1)");
        row("unsorted", false, "(1, 0), (0, 1)", "(0, 1), (1, 0)");
    }

    void loads() {
        QFETCH(bool, keys);
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, after);
        const auto model = modelOf(keys, "(0, 0.25, selected), (1, 0.75)");
        const QByteArray before = model->save(0);
        QCOMPARE(model->load(0, bytes), !after.isEmpty());
        QCOMPARE(model->save(0), after.isEmpty() ? before : after);
    }

    void hosts() {
        CurvesModel model;
        Curves set(1, 8, 3);
        model.setCurves(set);
        model.select(0, 1, 1, CurveModel::SelectOnly);
        // An echo keeps the selection, which the host's curves do not have.
        model.setCurves(set);
        QCOMPARE(model.selectedKnots(0), std::vector<int>{1});
        set.addCurve(Curve());
        const QSignalSpy changed(&model, &CurveModel::curvesChanged);
        model.setCurves(set);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(model.name(0), QStringLiteral("Red"));
        model.setNames({QString(), QStringLiteral("Luma")});
        QCOMPARE(model.name(1), QStringLiteral("Luma"));
        Curve odd(8, 3);
        odd.setKnot(0, {0.9F, 0.5F, false});
        odd.setKnot(1, {NAN, 0.5F, false});
        model.setCurve(0, odd);
        QCOMPARE(model.save(0), QByteArray("(0.9, 0.5), (1, 1)"));

        auto* dies = new KeyCurveModel;
        for (int i = 0; i < 2; ++i)
            dies->addCurve(QString(), KeyCurve({KeyCurve::Key(), KeyCurve::Key()}));
        connect(dies, &CurveModel::knotsChanged, dies, [dies] { delete dies; });
        QVERIFY(dies->move({{0, 0, 1, 1}, {1, 0, 1, 1}}));
    }

    void staysOnTheStep() {
        KeyCurveModel model;
        KeyCurve curve;
        QVERIFY(curve.setText("(1, 0), (2.5, 0), (4, 0)"));
        model.addCurve(QString(), curve);
        CurveModel::Limits limits = model.limits(0);
        limits.stepX = 1;
        limits.gap = 1;
        model.setLimits(0, limits);
        QVERIFY(model.move({{0, 2, 6.4, 0}, {0, 1, 2.5, 1}}));
        QCOMPARE(model.save(0), QByteArray("(1, 0), (2.5, 1), (6, 0)"));
        QVERIFY(!model.move({{0, 1, 5.2, 1}, {0, 0, 4.9, 1}}));
        QCOMPARE(model.add(0, 4.4, 0), 2);
        QCOMPARE(model.knot(0, 2).x, 4.0);
        QCOMPARE(model.add(0, 3.9, 0), 3); // beside the one that is there
        QCOMPARE(model.knot(0, 3).x, 5.0);
        QCOMPARE(model.add(0, Infinite, 0), -1);
        QCOMPARE(model.add(0, -Infinite, 0), -1);
    }
};

KXUI_TEST(CurveModelsTest);
#include "CurveModelsTest.moc"
