#include <KxUI/values/NumberExpression_p.h>

#include <KxUI/values/NumberFunctions_p.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr int DeepestNesting = 64;

constexpr bool isAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Letters of other alphabets begin names, too: unknown ones.
constexpr bool isLetter(char16_t c) {
    return isAsciiLetter(c) || c > u'\u00bf';
}

class Parser {
public:
    Parser(std::u16string_view text, const ExpressionContext& context)
        : m_text(text)
        , m_context(context) {}

    ExpressionResult whole() {
        ExpressionResult result;
        if (sum(result.value)) {
            skipBlanks();
            if (m_at < m_text.size())
                fail(followsNumber() ? NumberProblem::DigitGroups : NumberProblem::UnexpectedText,
                     m_at);
        }
        result.problem = m_problem;
        result.column = m_column;
        return result;
    }

private:
    using Value = ExpressionValue;

    std::u16string_view m_text;
    const ExpressionContext& m_context;
    std::size_t m_at = 0;
    int m_depth = 0;
    NumberProblem m_problem = NumberProblem::None;
    std::size_t m_column = 0;

    bool fail(NumberProblem problem, std::size_t column) {
        m_problem = problem;
        m_column = column;
        return false;
    }

    char16_t at(std::size_t index) const { return index < m_text.size() ? m_text[index] : u'\0'; }

    char16_t next() {
        skipBlanks();
        return at(m_at);
    }

    void skipBlanks() {
        while (m_at < m_text.size() && isBlank(m_text[m_at]))
            ++m_at;
    }

    bool isPoint(char16_t c) const { return c == u'.' || c == m_context.point; }

    // Where no number can go on: a separator between digits was meant to part thousands.
    bool followsNumber() const {
        std::size_t before = m_at;
        while (before > 0 && isBlank(m_text[before - 1]))
            --before;
        if (before == 0 || !isDigit(m_text[before - 1]))
            return false;
        const char16_t c = m_text[m_at];
        if (isDigit(c))
            return before < m_at;
        const bool parts =
            c == m_context.group || isPoint(c) || c == u',' || c == u'\'' || c == u'\u2019';
        return parts && isDigit(at(m_at + 1));
    }

    bool finite(Value& value, std::size_t column) {
        return std::isfinite(value.number) || fail(NumberProblem::NoResult, column);
    }

    static void settlePercentage(Value& value) {
        if (value.unit == Value::Percentage)
            value = {value.number / 100.0, Value::Plain};
    }

    bool sum(Value& left);
    bool product(Value& left);
    bool unary(Value& value);
    bool power(Value& value);
    bool quantity(Value& value);
    bool unitOf(Value& value);
    bool primary(Value& value);
    bool parenthesis(Value& value);
    bool number(Value& value);
    bool name(Value& value);
    bool arguments(const NumberFunction& function, Value& value);
    bool argument(const NumberFunction& function, int index, Value& value);
    bool multiply(Value& left, Value right, std::size_t column);
    bool divide(Value& left, Value right, std::size_t column);
    bool alike(Value& left, Value& right, std::size_t column);
    bool plain(Value& value, std::size_t column);
};

// Brings two values to the same unit, which may be none.
bool Parser::alike(Value& left, Value& right, std::size_t column) {
    settlePercentage(left);
    settlePercentage(right);
    if (left.unit == Value::Plain && right.unit != Value::Plain)
        left.unit = m_context.shownUnit;
    else if (right.unit == Value::Plain && left.unit != Value::Plain)
        right.unit = m_context.shownUnit;
    if (left.unit == right.unit)
        return true;
    for (Value* side : {&left, &right}) {
        if (side->unit == Value::Base)
            continue;
        if (!m_context.units || !m_context.units->isLinear(side->unit))
            return fail(NumberProblem::UnitsDiffer, column);
        *side = {m_context.units->toBase(side->unit, side->number), Value::Base};
    }
    return true;
}

bool Parser::plain(Value& value, std::size_t column) {
    settlePercentage(value);
    return value.unit == Value::Plain || fail(NumberProblem::UnitNotHere, column);
}

bool Parser::sum(Value& left) {
    if (!product(left))
        return false;
    while (true) {
        const char16_t sign = next();
        if (sign != u'+' && sign != u'-')
            return true;
        const std::size_t column = m_at++;
        const double direction = sign == u'+' ? 1.0 : -1.0;
        Value right;
        if (!product(right))
            return false;
        if (right.unit == Value::Percentage && left.unit != Value::Percentage) {
            left.number += direction * left.number * right.number / 100.0;
        } else {
            const bool percentages = right.unit == Value::Percentage;
            if (!percentages && !alike(left, right, column))
                return false;
            left.number += direction * right.number;
        }
        if (!finite(left, column))
            return false;
    }
}

bool Parser::product(Value& left) {
    if (!unary(left))
        return false;
    while (true) {
        const char16_t sign = next();
        if (sign != u'*' && sign != u'/')
            return true;
        const std::size_t column = m_at++;
        Value right;
        if (!unary(right))
            return false;
        settlePercentage(left);
        settlePercentage(right);
        if (!(sign == u'*' ? multiply(left, right, column) : divide(left, right, column)) ||
            !finite(left, column))
            return false;
    }
}

bool Parser::multiply(Value& left, Value right, std::size_t column) {
    if (left.unit != Value::Plain && right.unit != Value::Plain)
        return fail(NumberProblem::UnitNotHere, column);
    left = {left.number * right.number, left.unit != Value::Plain ? left.unit : right.unit};
    return true;
}

bool Parser::divide(Value& left, Value right, std::size_t column) {
    if (right.unit != Value::Plain) {
        if (left.unit == Value::Plain)
            return fail(NumberProblem::UnitInDivisor, column);
        if (!alike(left, right, column))
            return false;
        left.unit = Value::Plain;
    }
    left.number =
        right.number == 0.0 ? std::numeric_limits<double>::quiet_NaN() : left.number / right.number;
    return true;
}

bool Parser::unary(Value& value) {
    bool negative = false;
    for (char16_t sign = next(); sign == u'+' || sign == u'-'; sign = next()) {
        negative = negative != (sign == u'-');
        ++m_at;
    }
    if (!power(value))
        return false;
    if (negative)
        value.number = -value.number;
    return true;
}

bool Parser::power(Value& value) {
    if (!quantity(value))
        return false;
    if (next() != u'^')
        return true;
    const std::size_t column = m_at++;
    if (++m_depth > DeepestNesting)
        return fail(NumberProblem::TooDeep, column);
    Value exponent;
    if (!unary(exponent))
        return false;
    --m_depth;
    if (!plain(value, column) || !plain(exponent, column))
        return false;
    value.number = std::pow(value.number, exponent.number);
    return finite(value, column);
}

bool Parser::quantity(Value& value) {
    return primary(value) && unitOf(value);
}

bool Parser::unitOf(Value& value) {
    const char16_t first = next();
    const std::size_t column = m_at;
    std::size_t length = 0;
    const int unit = m_context.units && column < m_text.size()
                         ? m_context.units->match(m_text.substr(column), length)
                         : -1;
    if (unit < 0 && first != u'%')
        return !isLetter(first) || fail(NumberProblem::UnknownUnit, column);
    if (value.unit != Value::Plain)
        return fail(NumberProblem::UnitNotHere, column);
    value.unit = unit < 0 ? int(Value::Percentage) : unit;
    m_at += unit < 0 ? 1 : length;
    return true;
}

bool Parser::primary(Value& value) {
    const char16_t first = next();
    if (isDigit(first) || (isPoint(first) && isDigit(at(m_at + 1))))
        return number(value);
    if (first == u'(')
        return parenthesis(value);
    if (isLetter(first))
        return name(value);
    return fail(NumberProblem::MissingNumber, m_at);
}

bool Parser::parenthesis(Value& value) {
    const std::size_t column = m_at++;
    if (++m_depth > DeepestNesting)
        return fail(NumberProblem::TooDeep, column);
    if (!sum(value))
        return false;
    if (next() != u')')
        return m_at < m_text.size() ? fail(NumberProblem::UnexpectedText, m_at)
                                    : fail(NumberProblem::UnclosedParenthesis, column);
    ++m_at;
    --m_depth;
    return true;
}

bool Parser::number(Value& value) {
    const std::size_t column = m_at;
    std::array<char, LongestExpression> digits;
    std::size_t count = 0;
    const auto takeDigits = [&] {
        while (isDigit(at(m_at)))
            digits[count++] = static_cast<char>(m_text[m_at++]);
    };
    takeDigits();
    if (isPoint(at(m_at))) {
        digits[count++] = '.';
        ++m_at;
        takeDigits();
    }
    const std::size_t sign = at(m_at + 1) == u'+' || at(m_at + 1) == u'-' ? 1 : 0;
    if ((at(m_at) | 0x20) == u'e' && isDigit(at(m_at + 1 + sign))) {
        digits[count++] = 'e';
        if (at(m_at + 1) == u'-')
            digits[count++] = '-';
        m_at += 1 + sign;
        takeDigits();
    }
    value = {decimalNumber({digits.data(), count}), Value::Plain};
    return finite(value, column);
}

bool Parser::name(Value& value) {
    const std::size_t column = m_at;
    std::array<char, 8> letters;
    std::size_t count = 0;
    for (; isLetter(at(m_at)) || (count > 0 && isDigit(at(m_at))); ++m_at) {
        const char16_t c = m_text[m_at];
        if (c > 0x7f || count == letters.size())
            return fail(NumberProblem::UnknownName, column);
        letters[count++] = static_cast<char>(isDigit(c) ? c : c | 0x20);
    }
    const std::string_view word(letters.data(), count);
    if (next() != u'(') {
        const bool isX = word == "x";
        if (!isX && word != "pi" && word != "e")
            return fail(NumberProblem::UnknownName, column);
        value = {isX ? m_context.x : word == "e" ? std::exp(1.0) : Pi, Value::Plain};
        return finite(value, column);
    }
    const NumberFunction* function = numberFunction(word);
    if (!function)
        return fail(NumberProblem::UnknownName, column);
    if (++m_depth > DeepestNesting)
        return fail(NumberProblem::TooDeep, m_at);
    ++m_at;
    if (!arguments(*function, value) || !finite(value, column))
        return false;
    --m_depth;
    return true;
}

bool Parser::arguments(const NumberFunction& function, Value& value) {
    const std::size_t opened = m_at - 1;
    for (int index = 0;; ++index) {
        if (index > 0 && !function.many)
            return fail(NumberProblem::WrongArguments, m_at - 1);
        if (!argument(function, index, value))
            return false;
        const char16_t after = next();
        if (after == u')') {
            ++m_at;
            return true;
        }
        if (after != u';' && (after != u',' || m_context.point == u','))
            return m_at < m_text.size() ? fail(NumberProblem::UnexpectedText, m_at)
                                        : fail(NumberProblem::UnclosedParenthesis, opened);
        ++m_at;
    }
}

bool Parser::argument(const NumberFunction& function, int index, Value& value) {
    Value given;
    next();
    const std::size_t column = m_at;
    if (!sum(given))
        return false;
    if (!function.many) {
        if (!plain(given, column))
            return false;
        value = {function.one(given.number), Value::Plain};
        return true;
    }
    if (index == 0) {
        settlePercentage(given);
        value = given;
        return true;
    }
    if (!alike(value, given, column))
        return false;
    value.number = function.many(value.number, given.number);
    return true;
}

} // namespace

double decimalNumber(std::string_view text) {
    // Up to 15 digits and 22 powers of ten are doubles, and so is the nearest to their quotient.
    constexpr double powers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    std::uint64_t digits = 0;
    std::size_t decimals = 0;
    bool afterPoint = false;
    bool isShort = text.size() <= 16;
    for (std::size_t i = 0; isShort && i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.') {
            afterPoint = true;
        } else if (c == 'e') {
            isShort = false;
        } else {
            digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
            decimals += afterPoint;
        }
    }
    if (isShort && digits < 1000000000000000U)
        return static_cast<double>(digits) / powers[decimals];
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) {
        // Too small is zero, however many zeros stand before the first digit.
        const std::size_t exponent = text.find('e');
        return exponent != std::string_view::npos && text.substr(exponent + 1, 1) == "-"
                   ? 0.0
                   : std::numeric_limits<double>::infinity();
    }
    return error == std::errc() && end == text.data() + text.size()
               ? number
               : std::numeric_limits<double>::infinity();
}

ExpressionResult evaluate(std::u16string_view text, const ExpressionContext& context) {
    if (text.size() > LongestExpression)
        return {{}, NumberProblem::TooLong, LongestExpression};
    return Parser(text, context).whole();
}

} // namespace Kestrel::UI
