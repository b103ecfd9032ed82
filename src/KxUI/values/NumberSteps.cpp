#include <KxUI/values/NumberSteps_p.h>

#include <KxUI/values/NumberExpression_p.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace Kestrel::UI {
namespace {

constexpr int MostDecimals = 15;
constexpr double WholeLimit = 9007199254740992.0; // 2^53

/** The parts of a text that holds one number. */
struct NumberParts {
    bool negative = false;
    std::string digits; ///< of the mantissa, without the point
    int first = 0;      ///< where they begin in the text
    int point = -1;     ///< where the point stands in the text
    int end = 0;        ///< behind the mantissa
    QString tail;       ///< the power of ten and the unit

    int decimals() const { return point < 0 ? 0 : end - point - 1; }
};

class PartsReader {
public:
    PartsReader(const QString& text, const NumberNotation& notation)
        : m_text(text)
        , m_notation(notation) {}

    std::optional<NumberParts> read() {
        NumberParts parts;
        int i = 0;
        while (i < m_text.size() && !isPart(m_text[i])) {
            const QChar c = m_text[i++];
            if (isMinus(c) && !parts.negative)
                parts.negative = true;
            else if (!c.isSpace() && c != QLatin1Char('+') && c.category() != QChar::Other_Format)
                return {};
        }
        parts.first = i;
        for (; i < m_text.size() && isPart(m_text[i]); ++i) {
            if (const int digit = digitOf(m_text[i]); digit >= 0)
                parts.digits += static_cast<char>('0' + digit);
            else if (parts.point < 0)
                parts.point = i;
            else
                return {};
        }
        parts.end = i;
        parts.tail = m_text.mid(i);
        const bool usable = !parts.digits.empty() && parts.digits.size() <= LongestExpression;
        return usable && readTail(parts) ? std::optional(parts) : std::nullopt;
    }

private:
    const QString& m_text;
    const NumberNotation& m_notation;

    int digitOf(QChar c) const {
        const int western = c.unicode() - u'0';
        const int native = c.unicode() - m_notation.zero;
        return western >= 0 && western < 10 ? western : native >= 0 && native < 10 ? native : -1;
    }
    bool isPart(QChar c) const {
        return digitOf(c) >= 0 || c == QLatin1Char('.') || c.unicode() == m_notation.point;
    }
    bool isMinus(QChar c) const {
        return c == QLatin1Char('-') || c.unicode() == 0x2212 || m_notation.minus.contains(c);
    }

    // An exponent, and then nothing that would go on calculating.
    bool readTail(const NumberParts& parts) const {
        int i = 0;
        if (!parts.tail.isEmpty() && parts.tail.front().toLower() == QLatin1Char('e')) {
            i = 1;
            while (i < parts.tail.size() && digitOf(parts.tail[i]) < 0 && !parts.tail[i].isLetter())
                ++i;
            const int begin = i;
            while (i < parts.tail.size() && digitOf(parts.tail[i]) >= 0)
                ++i;
            if (i == begin)
                i = 0; // the unit "ev"
        }
        return std::none_of(parts.tail.begin() + i, parts.tail.end(), [this](QChar c) {
            return isPart(c) || isMinus(c) || QStringLiteral("+*/^(),;").contains(c);
        });
    }
};

} // namespace

double withoutDust(double number) {
    char digits[32];
    const char* end =
        std::to_chars(digits, digits + sizeof digits, number, std::chars_format::scientific, 14)
            .ptr;
    double rounded = number;
    std::from_chars(digits, end, rounded);
    return rounded;
}

double powerOfTen(int exponent) {
    const std::string text = "1e" + std::to_string(exponent);
    return decimalNumber(text);
}

double steppedNumber(double number, double step, double steps) {
    const double sum = number + steps * step;
    const int decimals = std::max(decimalsOf(number), decimalsOf(step));
    if (decimals > MostDecimals || !std::isfinite(sum))
        return sum;
    const double scale = powerOfTen(decimals);
    if (std::fabs(number) * scale >= WholeLimit || std::fabs(sum) * scale >= WholeLimit)
        return sum;
    return std::round(sum * scale) / scale + 0.0; // never -0
}

double adaptiveStep(double number, double direction, double atZero) {
    if (number == 0.0)
        return atZero;
    const int exponent = decimalExponentOf(number);
    const bool isPower = std::fabs(number) == powerOfTen(exponent);
    const bool inwards = (number > 0.0) != (direction > 0.0);
    const double step = powerOfTen(exponent - (isPower && inwards ? 2 : 1));
    return step > 0.0 && std::isfinite(step) ? step : atZero;
}

std::optional<DigitPlace> digitAt(const QString& text, int caret, const NumberNotation& notation) {
    const std::optional<NumberParts> parts = PartsReader(text, notation).read();
    if (!parts)
        return {};
    int position = std::clamp(caret, parts->first, parts->end - 1);
    if (position == parts->point) // ".5" and "5." have a digit on one side only
        position += position + 1 < parts->end ? 1 : -1;
    const int units = parts->point < 0 ? parts->end : parts->point;
    return DigitPlace{position, position < units ? units - position - 1 : units - position};
}

int digitPosition(const QString& text, int exponent, const NumberNotation& notation) {
    const std::optional<NumberParts> parts = PartsReader(text, notation).read();
    if (!parts)
        return -1;
    const int units = parts->point < 0 ? parts->end : parts->point;
    const int position = exponent >= 0 ? units - 1 - exponent : units - exponent;
    return std::clamp(position, parts->first, parts->end - 1);
}

std::optional<DigitStep> steppedDigit(const QString& text, int caret, int steps,
                                      const NumberNotation& notation) {
    const std::optional<NumberParts> parts = PartsReader(text, notation).read();
    const std::optional<DigitPlace> place = digitAt(text, caret, notation);
    if (!parts || !place)
        return {};
    const int decimals = parts->decimals();
    const double size = decimalNumber(parts->digits + 'e' + std::to_string(-decimals));
    const double number = steppedNumber(parts->negative ? -size : size, powerOfTen(place->exponent),
                                        static_cast<double>(steps));
    QString mantissa = fixedNumberText(std::fabs(number), decimals, notation);
    const int units = int(mantissa.size()) - (decimals == 0 ? 0 : decimals + 1);
    const int missing = place->exponent + 1 - units;
    if (missing > 0)
        mantissa.prepend(QString(missing, QChar(notation.zero)));
    const int ones = units + std::max(missing, 0) - 1;
    const int inMantissa =
        place->exponent >= 0 ? ones - place->exponent : ones + 1 - place->exponent;
    const QString sign = number < 0.0 ? notation.minus : QString();
    return DigitStep{sign + mantissa + parts->tail, int(sign.size()) + inMantissa};
}

} // namespace Kestrel::UI
