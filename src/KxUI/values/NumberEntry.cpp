#include <KxUI/values/NumberEntry_p.h>

#include <KxUI/values/NumberSteps_p.h>

#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

class UnitsOf final : public ExpressionUnits {
public:
    explicit UnitsOf(const ValueUnits& units)
        : m_units(units) {}

    int match(std::u16string_view text, std::size_t& length) const override {
        int size = 0;
        const int unit =
            m_units.match(QStringView(text.data(), static_cast<qsizetype>(text.size())), &size);
        length = static_cast<std::size_t>(size);
        return unit;
    }
    bool isLinear(int unit) const override { return m_units.isLinear(unit); }
    double toBase(int unit, double number) const override { return m_units.toBase(unit, number); }
    double fromBase(int unit, double value) const override { return m_units.fromBase(unit, value); }

private:
    const ValueUnits& m_units;
};

/** The text with the digits and signs of all notations as the classic ones. Columns stay. */
class ClassicInput {
public:
    ClassicInput(const QString& text, const NumberNotation& notation)
        : m_size(static_cast<std::size_t>(text.size())) {
        for (std::size_t i = 0; i < m_size; ++i)
            m_text[i] = classic(text[static_cast<int>(i)], notation);
    }

    std::u16string_view view() const { return {m_text.data(), m_size}; }

private:
    std::array<char16_t, LongestExpression> m_text;
    std::size_t m_size;

    static char16_t classic(QChar c, const NumberNotation& notation) {
        const char16_t code = c.unicode();
        if (code < 0x80)
            return code;
        if (code >= notation.zero && code < notation.zero + 10)
            return static_cast<char16_t>(u'0' + (code - notation.zero));
        if (code == 0x2212) // the minus sign
            return u'-';
        if (code == 0x00d7 || code == 0x00b7) // times, middle dot
            return u'*';
        if (code == 0x00f7) // division
            return u'/';
        // Marks of writing direction have no width.
        return c.category() == QChar::Other_Format ? u' ' : code;
    }
};

NumberEntry failed(NumberProblem problem, std::size_t column) {
    NumberEntry entry;
    entry.kind = NumberEntry::Failed;
    entry.problem = problem;
    entry.column = static_cast<int>(column);
    return entry;
}

class Reader {
public:
    Reader(std::u16string_view text, const NumberContext& context)
        : m_text(text)
        , m_context(context)
        , m_hasUnits(context.shownUnit >= 0) {}

    NumberEntry read() {
        std::size_t begin = 0;
        while (begin < m_text.size() && isBlank(m_text[begin]))
            ++begin;
        if (begin == m_text.size())
            return {};
        const bool isRelative =
            m_text.size() > begin + 1 && m_text[begin + 1] == u'=' &&
            std::u16string_view(u"+-*/").find(m_text[begin]) != std::u16string_view::npos;
        const std::size_t from = isRelative ? begin + 2 : begin;
        const UnitsOf units(m_context.units);
        ExpressionContext expression;
        expression.x = shown(m_context.value);
        expression.point = m_context.notation.point;
        expression.group = m_context.notation.group;
        expression.units = m_hasUnits ? &units : nullptr;
        expression.shownUnit = m_context.shownUnit;
        const ExpressionResult result = evaluate(m_text.substr(from), expression);
        if (result.problem != NumberProblem::None)
            return failed(result.problem, result.column + from);
        const NumberEntry entry =
            isRelative ? changed(m_text[begin], result.value) : set(result.value);
        return entry.kind == NumberEntry::Failed ? failed(entry.problem, from) : entry;
    }

private:
    using Value = ExpressionValue;

    std::u16string_view m_text;
    const NumberContext& m_context;
    bool m_hasUnits;

    double shown(double value) const {
        return m_hasUnits ? m_context.units.fromBase(m_context.shownUnit, value) : value;
    }
    double base(int unit, double number) const {
        return m_hasUnits && unit >= 0 ? m_context.units.toBase(unit, number) : number;
    }

    NumberEntry finite(NumberEntry entry) const {
        return std::isfinite(entry.value) ? entry : failed(NumberProblem::NoResult, 0);
    }

    NumberEntry set(Value value) const {
        NumberEntry entry;
        entry.kind = NumberEntry::Set;
        if (value.unit == Value::Percentage) {
            if (m_hasUnits)
                return failed(NumberProblem::UnknownUnit, 0);
            value = {value.number / 100.0, Value::Plain};
        }
        entry.value =
            base(value.unit == Value::Plain ? m_context.shownUnit : value.unit, value.number);
        return finite(entry);
    }

    NumberEntry changed(char16_t operation, Value by) const {
        const bool sums = operation == u'+' || operation == u'-';
        if (by.unit == Value::Percentage) {
            // "+=10%" is a tenth more, whatever the unit is.
            const double part = by.number / 100.0;
            return scaled(sums ? u'*' : operation, operation == u'+'   ? 1.0 + part
                                                   : operation == u'-' ? 1.0 - part
                                                                       : part);
        }
        if (!sums)
            return by.unit == Value::Plain ? scaled(operation, by.number)
                                           : failed(NumberProblem::UnitNotHere, 0);
        return added(operation, by);
    }

    NumberEntry relative(char16_t operation, double operand, double value) const {
        NumberEntry entry;
        entry.kind = NumberEntry::Relative;
        entry.operation = QChar(operation);
        entry.operand = operand;
        entry.value = value;
        return std::isfinite(operand) ? finite(entry) : failed(NumberProblem::NoResult, 0);
    }

    // Of the value itself, which is what a factor means in every unit but one with another zero.
    NumberEntry scaled(char16_t operation, double factor) const {
        if (operation == u'/' && factor == 0.0)
            return failed(NumberProblem::NoResult, 0);
        if (m_hasUnits && !m_context.units.isLinear(m_context.shownUnit) &&
            !m_context.units.unit(m_context.shownUnit).powerOfTwo)
            return failed(NumberProblem::UnitNotHere, 0);
        const double value =
            operation == u'*' ? m_context.value * factor : m_context.value / factor;
        return relative(operation, factor, value);
    }

    NumberEntry added(char16_t operation, Value by) const {
        const double sign = operation == u'+' ? 1.0 : -1.0;
        const int unit = by.unit == Value::Plain ? m_context.shownUnit : by.unit;
        if (!m_hasUnits || unit < 0) // no unit, or the base
            return relative(operation, by.number, steppedNumber(m_context.value, by.number, sign));
        const ValueUnits& units = m_context.units;
        if (units.unit(unit).powerOfTwo) { // a stop more is twice as much
            const double factor = units.toBase(unit, by.number);
            return scaled(operation == u'+' ? u'*' : u'/', factor);
        }
        // Differences have no offset.
        const double operand = units.toBase(unit, by.number) - units.toBase(unit, 0.0);
        const double value =
            unit == m_context.shownUnit
                ? units.toBase(unit, steppedNumber(shown(m_context.value), by.number, sign))
                : steppedNumber(m_context.value, operand, sign);
        return relative(operation, operand, value);
    }
};

} // namespace

NumberEntry readNumber(const QString& text, const NumberContext& context) {
    if (text.size() > static_cast<int>(LongestExpression))
        return failed(NumberProblem::TooLong, LongestExpression);
    const ClassicInput input(text, context.notation);
    return Reader(input.view(), context).read();
}

} // namespace Kestrel::UI
