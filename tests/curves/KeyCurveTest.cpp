#include <KxUI/curves/Curve.h>
#include <KxUI/curves/KeyCurve.h>

#include <support/TestRegistry.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace Kestrel::UI;
using Key = KeyCurve::Key;
using Shape = KeyCurve::Shape;
using Beyond = KeyCurve::Beyond;

namespace {

constexpr Shape AllShapes[] = {Shape::Constant, Shape::Linear,  Shape::Smooth,
                               Shape::Monotone, Shape::Natural, Shape::Free};

Key keyAt(double x, double y, Shape shape = Shape::Monotone) {
    Key key;
    key.x = x;
    key.y = y;
    key.shape = shape;
    return key;
}

class Random {
public:
    explicit Random(unsigned seed)
        : m_engine(seed) {}
    double unit() { return m_unit(m_engine); }
    std::size_t below(std::size_t count) { return std::size_t(m_engine()) % count; }
    Key key(double width) {
        Key key = keyAt(unit() * width, unit(), AllShapes[below(std::size(AllShapes))]);
        key.slopeIn = unit() * 4 - 2;
        key.slopeOut = unit() * 4 - 2;
        key.broken = below(2) == 0;
        return key;
    }
    KeyCurve curve(std::size_t count) {
        std::vector<Key> keys;
        for (std::size_t i = 0; i < count; ++i) {
            keys.push_back(key(1));
            keys.back().x = double(i) + 0.9 * unit();
        }
        return KeyCurve(keys);
    }

private:
    std::mt19937 m_engine;
    std::uniform_real_distribution<double> m_unit{0, 1};
};

std::vector<double> samples(const KeyCurve& curve, double from, double to, std::size_t count) {
    std::vector<double> values(count);
    curve.sample(from, to, count, values.data());
    return values;
}

bool isNear(double a, double b, double tolerance) {
    return std::abs(a - b) <= tolerance * std::max({1.0, std::abs(a), std::abs(b)});
}

} // namespace

class KeyCurveTest : public QObject {
    Q_OBJECT

private slots:
    // Of the piece from (1, 1) to (2, 3), the third of (0, 0), (1, 1), (2, 3), (4, 3).
    void shapes() {
        const struct {
            Shape shape;
            double middle, slope;
        } rows[] = {{Shape::Constant, 1.0, 0.0},
                    {Shape::Linear, 2.0, 2.0},
                    {Shape::Smooth, 2 + (1.5 - 2.0 / 3) / 8, 1.5},
                    {Shape::Monotone, 2 + (4.0 / 3) / 8, 4.0 / 3},
                    {Shape::Free, 2 + (0.5 - -1.0) / 8, 0.5}};
        for (const auto& row : rows) {
            std::vector<Key> keys;
            for (const auto& at : {std::pair(0, 0), {1, 1}, {2, 3}, {4, 3}})
                keys.push_back(keyAt(at.first, at.second, row.shape));
            keys[1].slopeOut = 0.5;
            keys[2].slopeIn = -1;
            keys[2].broken = true;
            const KeyCurve curve(keys);
            QCOMPARE(curve.valueAt(1.5), row.middle);
            QCOMPARE(curve.slopes(1).out, row.slope);
            QCOMPARE(curve.valueAt(2), 3.0);
            QCOMPARE(curve.valueAt(-1), 0.0);
            QCOMPARE(curve.valueAt(9), 3.0);
        }
    }

    void keepsMonotone() {
        Random random(1);
        for (int round = 0; round < 500; ++round) {
            std::vector<Key> keys;
            double x = 0;
            double y = 0;
            for (int i = 0; i < 12; ++i)
                keys.push_back(keyAt(x += random.unit() + 1e-3, y += std::pow(random.unit(), 8)));
            const KeyCurve curve(keys);
            for (std::size_t i = 0; i + 1 < keys.size(); ++i) {
                const KeyCurve::Range range = curve.range(keys[i].x, keys[i + 1].x);
                QVERIFY(range.low >= keys[i].y - 1e-12 && range.high <= keys[i + 1].y + 1e-12);
            }
        }
    }

    void isTheFunctionOfCurve() {
        Random random(2);
        for (int round = 0; round < 3000; ++round) {
            Curve curve(8, unsigned(2 + random.below(7)));
            std::vector<float> xs(std::size_t(curve.numKnots()));
            for (float& x : xs)
                x = random.below(8) == 0 ? 0.5F : float(random.unit());
            std::sort(xs.begin(), xs.end());
            for (int i = 0; i < curve.numKnots(); ++i)
                curve.setKnot(i, {xs[std::size_t(i)], float(random.unit()), false});
            // Knots that are close, not coincident, amplify the rounding of floats.
            float gap = 1;
            for (std::size_t i = 1; i < xs.size(); ++i)
                gap = xs[i] == xs[i - 1] ? gap : std::min(gap, xs[i] - xs[i - 1]);
            if (gap < 1e-3F)
                continue;
            const KeyCurve keys = KeyCurve::of(curve);
            for (int i = -8; i <= 136; ++i) {
                const float x = float(i) / 128;
                const double expected = double(curve.valueAt(x));
                QVERIFY2(isNear(keys.valueAt(double(x)), expected, 1e-4),
                         qPrintable(QString::number(keys.valueAt(double(x)) - expected)));
            }
        }
    }

    void becomesACurve() {
        Curve curve(8, 5);
        curve.setKnot(2, {0.4F, 0.8F, false});
        Curve back;
        QVERIFY(KeyCurve::of(curve).toCurve(back, 1e-5F));
        QCOMPARE(back.numKnots(), 5);
        QCOMPARE(back.valueAt(0.3F), curve.valueAt(0.3F));

        std::vector<Key> many;
        for (int i = 0; i <= 40; ++i)
            many.push_back(keyAt(i / 40.0, std::pow(i / 40.0, 2.2), Shape::Smooth));
        QVERIFY(KeyCurve(many).toCurve(back, 0.005F));
        QVERIFY(back.numKnots() <= 8);
        QVERIFY(std::abs(back.valueAt(0.33F) - std::pow(0.33F, 2.2F)) < 0.005F);

        many[20].y = 5;
        const Curve before = back;
        QVERIFY(!KeyCurve(many).toCurve(back, 0.005F));
        QVERIFY(back == before);
    }

    // Every edit leaves the same pieces as a curve that is made anew.
    void editsAreLocal() {
        Random random(3);
        for (int round = 0; round < 200; ++round) {
            KeyCurve curve = random.curve(1 + random.below(30));
            for (int edit = 0; edit < 10; ++edit) {
                const std::size_t at = random.below(curve.size() + 1);
                switch (random.below(4)) {
                case 0:
                    curve.insert(random.key(30));
                    break;
                case 1:
                    curve.erase(at, random.below(4));
                    break;
                case 2: {
                    Key key = random.key(1);
                    key.x = curve.key(at).x;
                    curve.setKey(at, key);
                    break;
                }
                default:
                    curve.setSelected(at, true);
                }
                KeyCurve anew(curve.keys());
                QCOMPARE(anew.size(), curve.size());
                QVERIFY(samples(anew, -2, 32, 500) == samples(curve, -2, 32, 500));
            }
        }
    }

    void keyOnTheCurveChangesNothing() {
        Random random(4);
        for (int round = 0; round < 300; ++round) {
            const KeyCurve curve = random.curve(2 + random.below(9));
            const double first = curve.key(0).x;
            const double last = curve.key(curve.size() - 1).x;
            const double x = first + (last - first) * random.unit();
            KeyCurve cut = curve;
            const std::size_t index = cut.insertOnCurve(x);
            QCOMPARE(cut.size(), curve.size() + 1);
            QCOMPARE(cut.key(index).x, x);
            const std::vector<double> before = samples(curve, first, last, 401);
            const std::vector<double> after = samples(cut, first, last, 401);
            for (std::size_t i = 0; i < before.size(); ++i)
                QVERIFY2(isNear(before[i], after[i], 1e-9),
                         qPrintable(QString::number(before[i] - after[i])));
            QCOMPARE(cut.insertOnCurve(x), index);
            QCOMPARE(cut.insertOnCurve(last + 1), cut.size());
        }
    }

    void beyond() {
        const struct {
            Beyond beyond;
            double left, right, slopeLeft, slopeRight; ///< at -0.5 and 2.5
        } rows[] = {{Beyond::Hold, 0.0, 4.0, 0.0, 0.0},
                    {Beyond::Line, -0.5, 5.5, 1.0, 3.0},
                    {Beyond::Repeat, 2.5, 0.5, 3.0, 1.0},
                    {Beyond::Mirror, 0.5, 2.5, -1.0, -3.0}};
        KeyCurve curve(
            {keyAt(0, 0, Shape::Linear), keyAt(1, 1, Shape::Linear), keyAt(2, 4, Shape::Linear)});
        for (const auto& row : rows) {
            curve.setBeyond(row.beyond, row.beyond);
            QCOMPARE(curve.valueAt(-0.5), row.left);
            QCOMPARE(curve.valueAt(2.5), row.right);
            QCOMPARE(curve.slopeAt(-0.5), row.slopeLeft);
            QCOMPARE(curve.slopeAt(2.5), row.slopeRight);
        }
    }

    void samplesAndRangesAreTheValues() {
        Random random(5);
        for (int round = 0; round < 200; ++round) {
            KeyCurve curve = random.curve(random.below(12));
            if (curve.size() > 1) { // a step at the last key is one place that samples miss
                Key key = curve.key(curve.size() - 2);
                key.shape = Shape::Natural;
                curve.setKey(curve.size() - 2, key);
            }
            curve.setBeyond(Beyond(random.below(4)), Beyond(random.below(4)));
            const double from = random.unit() * 60 - 25;
            const double to = random.unit() * 60 - 25;
            constexpr std::size_t Count = 3000;
            const std::vector<double> values = samples(curve, from, to, Count);
            const double step = (to - from) / (Count - 1);
            for (std::size_t i = 0; i < Count; ++i) {
                const double x = i + 1 < Count ? from + double(i) * step : to;
                QCOMPARE(values[i], curve.valueAt(x));
            }
            const auto [low, high] = std::minmax_element(values.begin(), values.end());
            const KeyCurve::Range range = curve.range(from, to);
            // Samples miss peaks and steps by little.
            QVERIFY2(range.low <= *low + 1e-12 && range.high >= *high - 1e-12,
                     qPrintable(QString("%1 %2").arg(range.low - *low).arg(range.high - *high)));
            const double slack = 0.05 * std::max(1.0, *high - *low);
            QVERIFY2(range.low >= *low - slack && range.high <= *high + slack,
                     qPrintable(QString("%1 %2 for %3 %4")
                                    .arg(range.low)
                                    .arg(range.high)
                                    .arg(*low)
                                    .arg(*high)));
        }
    }

    void whatIsNotTaken() {
        const double bad[] = {NAN, HUGE_VAL, -HUGE_VAL, 1e150};
        std::vector<Key> keys{keyAt(2, 1), keyAt(1, 5), keyAt(2, 3), keyAt(0, 0)};
        for (const double number : bad) {
            keys.push_back(keyAt(number, 0));
            keys.push_back(keyAt(0, number));
        }
        KeyCurve curve(keys);
        QCOMPARE(int(curve.size()), 3); // sorted, of those at 2 the last one
        QCOMPARE(curve.valueAt(2), 3.0);
        QCOMPARE(curve.insert(keyAt(NAN, 1)), curve.size());
        QVERIFY(!curve.setKey(1, keyAt(0, 9)));
        QVERIFY(!curve.setKey(3, keyAt(9, 9)));
        QVERIFY(!curve.setKeys(1, {keyAt(1.5, 0), keyAt(1.2, 0)}));
        const KeyCurve copy = curve;
        curve.erase(1, std::numeric_limits<std::size_t>::max());
        QCOMPARE(int(curve.size()), 1);
        QCOMPARE(int(copy.size()), 3);
        QCOMPARE(curve.valueAt(7), 0.0);
        QCOMPARE(KeyCurve().valueAt(1), 0.0);
    }

    void numbersStayFinite() {
        Random random(6);
        const double wild[] = {0, 1, -1, 1e149, -1e149, 1e-300, -1e-300, 5e-324, 1e-149, 1 + 1e-15};
        for (int round = 0; round < 2000; ++round) {
            std::vector<Key> keys;
            for (int i = 0; i < 6; ++i) {
                Key key = random.key(1);
                key.x = wild[random.below(std::size(wild))];
                key.y = wild[random.below(std::size(wild))];
                key.slopeOut = wild[random.below(std::size(wild))];
                keys.push_back(key);
            }
            const KeyCurve curve(keys);
            for (const double x : wild) {
                QVERIFY(std::isfinite(curve.valueAt(x)));
                QVERIFY(std::isfinite(curve.valueAt(x * 0.3 + 0.1)));
            }
        }
    }
};

KXUI_TEST(KeyCurveTest);
#include "KeyCurveTest.moc"
