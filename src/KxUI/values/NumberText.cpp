#include <KxUI/values/NumberText_p.h>

#include <QStringView>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace Kestrel::UI {
namespace {

constexpr double Large = 1e15; // doubles above have no places to show
constexpr double Small = 1e-5; // exact texts below have a power of ten
// The longest double without a power of ten, its sign, and as many places as can be typed.
constexpr std::size_t Room = 640;

// 10^-decimals as the text "0.0001" reads.
constexpr double placeUnit(int decimals) {
    constexpr double units[] = {1e0,  1e-1, 1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,
                                1e-8, 1e-9, 1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15};
    return units[decimals];
}

/** A number in the classic notation, as std::to_chars writes it. */
class ClassicText {
public:
    template <class... Format>
    explicit ClassicText(double number, Format... format)
        : m_size(static_cast<std::size_t>(
              std::to_chars(m_text, m_text + Room, number, format...).ptr - m_text)) {}

    std::string_view view() const { return {m_text, m_size}; }

    /** Cuts zeros behind the point, of which `fewest` places stay. */
    void cutZeros(std::size_t fewest) {
        const std::size_t point = view().find('.');
        if (point == std::string_view::npos)
            return;
        while (m_size > point + 1 + fewest && m_text[m_size - 1] == '0')
            --m_size;
        if (m_text[m_size - 1] == '.')
            --m_size;
    }

    /** Of "1e+05" and "-0": what nobody types. */
    void cutSigns() {
        if (const std::size_t e = view().find('e'); e != std::string_view::npos) {
            std::size_t to = e + 1 + (m_text[e + 1] == '-');
            std::size_t from = e + 2;
            while (from + 1 < m_size && m_text[from] == '0')
                ++from;
            while (from < m_size)
                m_text[to++] = m_text[from++];
            m_size = to;
        }
        if (m_text[0] == '-' && view().find_first_not_of("-0.") == std::string_view::npos) {
            std::copy(m_text + 1, m_text + m_size, m_text);
            --m_size;
        }
    }

    QString in(const NumberNotation& notation) const {
        QString text(int(m_size), Qt::Uninitialized);
        QChar* to = text.data();
        for (const char c : view()) {
            if (c >= '0' && c <= '9')
                *to++ = QChar(char16_t(notation.zero + (c - '0')));
            else
                *to++ = c == '.' ? QChar(notation.point) : QLatin1Char(c);
        }
        if (notation.minus == QLatin1String("-"))
            return text;
        // Backwards: the sign of a number may be longer than the one character that it is here. An
        // exponent's has no marks of writing direction, which would part it from its number.
        const int e = int(text.lastIndexOf(QLatin1Char('e')));
        if (e >= 0)
            text.replace(e, int(text.size()) - e,
                         text.mid(e).replace(QLatin1Char('-'), sign(notation)));
        if (text.startsWith(QLatin1Char('-')))
            text.replace(0, 1, notation.minus);
        return text;
    }

    static QString sign(const NumberNotation& notation) {
        for (const QChar c : notation.minus) {
            if (c.category() != QChar::Other_Format)
                return c;
        }
        return QStringLiteral("-");
    }

private:
    char m_text[Room];
    std::size_t m_size;
};

} // namespace

NumberNotation NumberNotation::of(const QLocale& locale) {
    const auto single = [](const QString& text, char16_t otherwise) {
        return text.size() == 1 ? char16_t(text.front().unicode()) : otherwise;
    };
    NumberNotation notation;
    notation.point = single(QString(locale.decimalPoint()), u'.');
    notation.group = single(QString(locale.groupSeparator()), u',');
    notation.zero = single(QString(locale.zeroDigit()), u'0');
    notation.minus = QString(locale.negativeSign());
    if (notation.minus.isEmpty())
        notation.minus = QStringLiteral("-");
    return notation;
}

QString numberText(double number, int decimals, int fewestDecimals,
                   const NumberNotation& notation) {
    const double size = std::fabs(number);
    if (size >= Large || (size > 0.0 && size < placeUnit(decimals))) {
        ClassicText text(number, std::chars_format::general, 6);
        text.cutSigns();
        return text.in(notation);
    }
    ClassicText text(number, std::chars_format::fixed, decimals);
    text.cutZeros(static_cast<std::size_t>(std::clamp(fewestDecimals, 0, decimals)));
    text.cutSigns();
    return text.in(notation);
}

QString exactNumberText(double number, const NumberNotation& notation) {
    const double size = std::fabs(number);
    const bool isPlain = number == 0.0 || (size >= Small && size < Large);
    ClassicText text(number, isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    text.cutSigns();
    return text.in(notation);
}

QString fixedNumberText(double number, int decimals, const NumberNotation& notation) {
    ClassicText text(number, std::chars_format::fixed, decimals);
    text.cutSigns();
    return text.in(notation);
}

int decimalsOf(double number) {
    const ClassicText text(number, std::chars_format::scientific);
    const std::string_view view = text.view();
    const std::size_t e = view.find('e');
    const std::size_t point = view.find('.');
    if (e == std::string_view::npos)
        return 0;
    const int digits = point == std::string_view::npos ? 0 : int(e - point) - 1;
    return std::max(0, digits - decimalExponentOf(number));
}

int decimalExponentOf(double number) {
    if (number == 0.0)
        return 0;
    const ClassicText text(number, std::chars_format::scientific);
    const std::string_view view = text.view();
    const std::size_t e = view.find('e');
    int exponent = 0;
    if (e != std::string_view::npos)
        std::from_chars(view.data() + e + (view[e + 1] == '+' ? 2 : 1), view.data() + view.size(),
                        exponent);
    return exponent;
}

} // namespace Kestrel::UI
