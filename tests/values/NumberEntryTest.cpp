#include <KxUI/values/NumberEntry_p.h>
#include <KxUI/values/NumberText_p.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <cmath>
#include <limits>

using namespace Kestrel;
using namespace Kestrel::UI;

Q_DECLARE_METATYPE(NumberProblem)

namespace {

constexpr double NoValue = std::numeric_limits<double>::quiet_NaN();

NumberEntry read(const QString& text, const QString& locale, const ValueUnits& units = {},
                 const QString& shown = QString(), double value = 0.0) {
    const auto notation = NumberNotation::of(QLocale(locale));
    const int unit = units.isEmpty() ? -1 : qMax(0, units.indexOf(shown));
    return UI::readNumber(text, {notation, units, unit, value});
}

ValueUnits unitsNamed(const QString& name) {
    ValueUnits units = name == QLatin1String("length")    ? ValueUnits::length(254.0)
                       : name == QLatin1String("percent") ? ValueUnits::percent()
                       : name == QLatin1String("angle")   ? ValueUnits::angle()
                       : name == QLatin1String("stops")   ? ValueUnits::stops()
                       : name == QLatin1String("frames")
                           ? ValueUnits::frames(Base::TimeBase(25, false))
                           : ValueUnits();
    if (name == QLatin1String("warmth")) {
        units.add({QStringLiteral("K"), {}});
        units.add({QStringLiteral("\u00b0C"), {}, 1.0, 273.15});
    }
    return units;
}

void compare(double actual, double expected) {
    if (std::isnan(expected) || expected == 0.0)
        QCOMPARE(std::isnan(actual), std::isnan(expected));
    else
        QVERIFY2(std::fabs(actual - expected) <= 1e-14 * std::fabs(expected),
                 qPrintable(QString::number(actual, 'g', 17)));
}

} // namespace

class NumberEntryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void grammar_data() {
        const Test::Columns<QString, QString, double, NumberProblem, int> row(
            "text", "locale", "value", "problem", "column");
        const auto good = [&](const char* text, double value, const char* locale = "C") {
            row(text, QString::fromUtf8(text), QString::fromLatin1(locale), value,
                NumberProblem::None, 0);
        };
        const auto bad = [&](const char* text, NumberProblem problem, int column,
                             const char* locale = "C") {
            row(text, QString::fromUtf8(text), QString::fromLatin1(locale), NoValue, problem,
                column);
        };
        good("0.18*2", 0.36);
        good("  -2^2 ", -4.0);
        good("2^3^2", 512.0);
        good("2^-1", 0.5);
        good("--3", 3.0);
        good("1e3", 1000.0);
        good(".5+5.", 5.5);
        good("2*e", 2.0 * std::exp(1.0));
        good("1/3*3", 1.0);
        good("(1+2)*(3-4)", -3.0);
        good("max(1, 2; 3)", 3.0);
        good("min(-1)", -1.0);
        good("sin(30)+cos(60)+tan(45)+sin(180)-cos(180)", 3.0);
        good("SQRT(16)+log10(1e2)+Log2(8)+abs(-1)", 10.0);
        good("stops(3)", 8.0);
        good("atan(1)+asin(1)+acos(1)", 135.0);
        good("floor(-0.5)+ceil(0.5)+round(2.5)+ln(exp(1))", 4.0);
        good("x*1.1", 11.0);
        good("200*10%", 20.0);
        good("200-10%", 180.0);
        good("1\u00d72\u00f74\u22121", -0.5);
        good("1e-400", 0.0);
        good("00000000000000000000000000000012345678901234567890", 12345678901234567890.0);
        good("3,14", 3.14, "de_DE");
        good("3.14", 3.14, "de_DE");
        good("1.000", 1.0, "de_DE");
        good("max(1,5;2)", 2.0, "de_DE");
        good("\u0661\u066b\u0665", 1.5, "ar_EG");
        bad("1,000", NumberProblem::DigitGroups, 1, "en_US");
        bad("1.000,5", NumberProblem::DigitGroups, 5, "de_DE");
        bad("1\u202f000", NumberProblem::DigitGroups, 2, "fr_FR");
        bad("1/0", NumberProblem::NoResult, 1);
        bad("sqrt(-1)", NumberProblem::NoResult, 0);
        bad("1e400", NumberProblem::NoResult, 0);
        bad("10^400", NumberProblem::NoResult, 2);
        bad("tan(90)", NumberProblem::NoResult, 0);
        bad("nan", NumberProblem::UnknownName, 0);
        bad("inf", NumberProblem::UnknownName, 0);
        bad("print(1)", NumberProblem::UnknownName, 0);
        bad("system", NumberProblem::UnknownName, 0);
        bad("2+", NumberProblem::MissingNumber, 2);
        bad("2**3", NumberProblem::MissingNumber, 2);
        bad("()", NumberProblem::MissingNumber, 1);
        bad("(1+2", NumberProblem::UnclosedParenthesis, 0);
        bad("sin(1", NumberProblem::UnclosedParenthesis, 3);
        bad("1)", NumberProblem::UnexpectedText, 1);
        bad("1.2.3", NumberProblem::DigitGroups, 3);
        bad("sin(1;2)", NumberProblem::WrongArguments, 5);
        bad("5 mm", NumberProblem::UnknownUnit, 2);
        bad("0x10", NumberProblem::UnknownUnit, 1);
        row("long", QString(300, QLatin1Char('1')), QStringLiteral("C"), NoValue,
            NumberProblem::TooLong, 256);
        row("deep", QString(100, QLatin1Char('(')), QStringLiteral("C"), NoValue,
            NumberProblem::TooDeep, 64);
        row("towers", QStringLiteral("1^").repeated(100) + QLatin1Char('1'), QStringLiteral("C"),
            NoValue, NumberProblem::TooDeep, 129);
    }
    void grammar() {
        QFETCH(QString, text);
        QFETCH(QString, locale);
        const NumberEntry entry = read(text, locale, {}, {}, 10.0);
        QTEST(entry.problem, "problem");
        QTEST(entry.column, "column");
        QFETCH(double, value);
        compare(entry.kind == NumberEntry::Set ? entry.value : NoValue, value);
    }

    void units_data() {
        const Test::Columns<QString, QString, QString, double, NumberProblem> row(
            "units", "shown", "text", "value", "problem");
        const auto add = [&](const char* units, const char* shown, const char* text, double value,
                             NumberProblem problem = NumberProblem::None) {
            row(text, QString::fromLatin1(units), QString::fromUtf8(shown), QString::fromUtf8(text),
                value, problem);
        };
        add("length", "mm", "10 + 2 mm", 120.0);
        add("length", "px", "10 + 2 mm", 30.0);
        add("length", "mm", "2*10mm", 200.0);
        add("length", "px", "10cm/2mm", 50.0);
        add("length", "px", "1e3px", 1000.0);
        add("length", "px", "min(3;1mm)", 3.0);
        add("length", "px", "1 IN", 254.0);
        add("length", "px", "2\"", 508.0);
        add("length", "px", "(1+1)in", 508.0);
        add("length", "mm", "+=1", 60.0);
        add("length", "mm", "+=1cm", 150.0);
        add("length", "px", "-=10%", 45.0);
        add("length", "px", "*=2", 100.0);
        add("length", "px", "x/2", 25.0);
        add("length", "px", "1 M", NoValue, NumberProblem::UnknownUnit);
        add("length", "px", "2mmx", NoValue, NumberProblem::UnknownUnit);
        add("length", "px", "1/2mm", NoValue, NumberProblem::UnitInDivisor);
        add("length", "px", "2mm*2mm", NoValue, NumberProblem::UnitNotHere);
        add("length", "px", "2mm^2", NoValue, NumberProblem::UnitNotHere);
        add("length", "px", "sin(2mm)", NoValue, NumberProblem::UnitNotHere);
        add("length", "px", "50%", NoValue, NumberProblem::UnknownUnit);
        add("length", "px", "5'6\"", NoValue, NumberProblem::DigitGroups);
        add("percent", "%", "7", 0.07);
        add("percent", "%", "50 %", 0.5);
        add("percent", "%", "+=10%", 50.1);
        add("angle", "\u00b0", "1turn-90", 270.0);
        add("angle", "\u00b0", "30'", 0.5);
        add("stops", "stops", "3", 8.0);
        add("stops", "x", "2 stops + 1 stop", 8.0);
        add("stops", "stops", "+=1", 100.0);
        add("stops", "x", "2 x", 2.0);
        add("stops", "x", "2 stops + 1", NoValue, NumberProblem::UnitsDiffer);
        add("frames", "f", "1s+5", 30.0);
        add("frames", "s", "40 ms", 1.0);
        add("warmth", "\u00b0C", "+=10", 60.0);
        add("warmth", "K", "0\u00b0C", 273.15);
        add("warmth", "\u00b0C", "*=2", NoValue, NumberProblem::UnitNotHere);
        add("none", "", "+=10%", 55.0);
        add("none", "", " /= 4", 12.5);
        add("none", "", "-= 0.1", 49.9);
        add("none", "", "/=0", NoValue, NumberProblem::NoResult);
        add("none", "", "*=", NoValue, NumberProblem::MissingNumber);
    }
    void units() {
        QFETCH(QString, units);
        QFETCH(QString, shown);
        QFETCH(QString, text);
        const NumberEntry entry = read(text, QStringLiteral("C"), unitsNamed(units), shown, 50.0);
        QTEST(entry.problem, "problem");
        QFETCH(double, value);
        compare(entry.kind == NumberEntry::Failed ? NoValue : entry.value, value);
    }

    void unitsThatAreNoUse() {
        ValueUnits units;
        for (const QString& symbol : {QString(), QStringLiteral("2x"), QStringLiteral("-"),
                                      QStringLiteral(" mm"), QStringLiteral("/s")})
            QVERIFY(!units.add({symbol, {}}));
        QVERIFY(!units.add({QStringLiteral("a"), {}, 0.0}));
        QVERIFY(!units.add({QStringLiteral("a"), {}, NoValue}));
        QVERIFY(ValueUnits::suffix(QStringLiteral("  ")).isEmpty());
        QCOMPARE(ValueUnits::length(-1.0).count(), 1);
        QCOMPARE(ValueUnits::frames(Base::TimeBase()).count(), 1);
        QVERIFY(std::isnan(ValueUnits::stops().fromBase(1, -1.0)));
        QVERIFY(ValueUnits::angle() == ValueUnits::angle());
        QVERIFY(ValueUnits::angle() != ValueUnits::length(72.0));
    }

    void texts() {
        const struct {
            double number;
            int decimals, fewest;
            const char* text;
        } rows[] = {{0.36, 4, 0, "0.36"},      {2.0, 4, 1, "2.0"},
                    {99.5, 4, 2, "99.50"},     {0.00001, 4, 0, "1e-5"},
                    {0.12345, 4, 0, "0.1235"}, {-0.0, 4, 0, "0"},
                    {-1.5, 0, 0, "-2"},        {0.5, 0, 0, "0.5"},
                    {1e15, 4, 0, "1e15"},      {123456789.0, 2, 0, "123456789"},
                    {0.1 + 0.2, 15, 0, "0.3"}, {-1.25e-7, 4, 4, "-1.25e-7"}};
        for (const auto& row : rows)
            QCOMPARE(UI::numberText(row.number, row.decimals, row.fewest, {}),
                     QString::fromLatin1(row.text));
    }

    void exactTextsReadBack() {
        for (const char* locale : {"C", "de_DE", "ar_EG", "fa_IR", "sv_SE"}) {
            const auto notation = NumberNotation::of(QLocale(QString::fromLatin1(locale)));
            for (const double number : {0.1 + 0.2, 1.0 / 3.0, -1e300, 5e-324, 123456.75}) {
                const QString text = UI::exactNumberText(number, notation);
                QCOMPARE(read(text, QString::fromLatin1(locale)).value, number);
            }
        }
    }
};

KXUI_TEST(NumberEntryTest);
#include "NumberEntryTest.moc"
