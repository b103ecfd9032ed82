#include "NumberOracle.h"

#include <support/TestRegistry.h>

#include <QtTest>

#include <random>

using Kestrel::Test::NumberOracle;

namespace {

/** Expressions by lot, as deep as asked for. */
class Expressions {
public:
    explicit Expressions(unsigned seed)
        : m_random(seed) {}

    std::string next(int depth) {
        if (depth == 0)
            return atom();
        switch (pick(7)) {
        case 0:
            return "(" + next(depth - 1) + ")";
        case 1:
            return "-(" + next(depth - 1) + ")";
        case 2:
            return one[pick(one.size())] + ("(" + next(depth - 1) + ")");
        case 3:
            return (pick(2) ? "max(" : "min(") + next(depth - 1) + "," + next(depth - 1) + ")";
        default:
            return next(depth - 1) + signs[pick(signs.size())] + next(depth - 1);
        }
    }

private:
    std::mt19937 m_random;
    const std::string signs = "+-*/^";
    const std::vector<std::string> one{"abs", "floor", "sqrt", "sin", "cos", "log2", "ln", "stops"};

    std::size_t pick(std::size_t count) { return m_random() % count; }
    std::string atom() {
        constexpr const char* atoms[] = {"2", "0.5",  "10",  "x", "pi",
                                         "e", "3.25", "1e2", "7", ".1"};
        return atoms[pick(10)];
    }
};

} // namespace

class NumberOracleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void agreesWithMuParser() {
        Expressions expressions(7);
        NumberOracle oracle(1.5);
        int numbers = 0;
        for (int i = 0; i < 20000; ++i) {
            const std::string text = expressions.next(i % 5);
            if (text.size() > 256)
                continue;
            const auto verdict = oracle.compare(text);
            QVERIFY2(verdict != NumberOracle::Differ, text.c_str());
            numbers += verdict == NumberOracle::SameNumber;
        }
        QVERIFY(numbers > 8000);
    }
};

KXUI_TEST(NumberOracleTest);
#include "NumberOracleTest.moc"
