#pragma once

#include <cstddef>
#include <string_view>

namespace Kestrel::UI {

/** Why a text is no number. */
enum class NumberProblem {
    None,
    MissingNumber,
    UnexpectedText,
    UnclosedParenthesis,
    UnknownName,
    UnknownUnit,
    UnitInDivisor,
    UnitNotHere,
    UnitsDiffer,
    WrongArguments,
    DigitGroups,
    TooLong,
    TooDeep,
    NoResult ///< a division by zero, an overflow, the root of a negative number
};

/** The units that an expression may name. */
class ExpressionUnits {
public:
    /** The unit that `text` begins with, and the length of its symbol; -1 for none. */
    virtual int match(std::u16string_view text, std::size_t& length) const = 0;
    /** Whether sums of such numbers are sums of what they stand for. */
    virtual bool isLinear(int unit) const = 0;
    virtual double toBase(int unit, double number) const = 0;
    virtual double fromBase(int unit, double value) const = 0;

protected:
    ~ExpressionUnits() = default;
};

/** What an expression is read with. */
struct ExpressionContext {
    double x = 0.0;        ///< in the unit that is shown
    char16_t point = u'.'; ///< a decimal point beside "."
    char16_t group = u','; ///< what would part thousands; such numbers are refused
    const ExpressionUnits* units = nullptr;
    int shownUnit = -1; ///< of the numbers that name none
};

/** A number and what it counts. */
struct ExpressionValue {
    enum : int { Plain = -1, Base = -2, Percentage = -3 };
    double number = 0.0;
    int unit = Plain; ///< one of the units, or one of the above
};

/** What was read, or where and why nothing could be. */
struct ExpressionResult {
    ExpressionValue value;
    NumberProblem problem = NumberProblem::None;
    std::size_t column = 0; ///< from 0
};

constexpr std::size_t LongestExpression = 256;

/** Evaluates sums, products, powers, parentheses and functions of numbers. Knows no other names
    than its own functions, pi, e and x. Angles are degrees. "10%" without such a unit is a tenth,
    and after "+" or "-" a tenth of what stands before. */
ExpressionResult evaluate(std::u16string_view text, const ExpressionContext& context);

/** The double nearest to a number of digits, a "." among them, and an exponent. Infinite where
    there is none. */
double decimalNumber(std::string_view text);

/** Between parts of an expression. */
constexpr bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\u00a0' || c == u'\u2009' || c == u'\u202f';
}

constexpr bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

} // namespace Kestrel::UI
