#include <KxUI/picker/ColorText_p.h>

#include <QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr float HalfCode = 0.5F / 255.0F;

/** The parts of a colour before it is known what they mean. */
struct Parts {
    std::array<float, 4> values{0.0F, 0.0F, 0.0F, 1.0F};
    int count = 0;
};

std::optional<float> numberOf(const QString& text) {
    QByteArray bytes = text.toLatin1();
    if (bytes.startsWith('+') && !bytes.startsWith("+-"))
        bytes.remove(0, 1);
    float number = 0.0F;
    const char* const end = bytes.constData() + bytes.size();
    const auto [stop, error] = std::from_chars(bytes.constData(), end, number);
    // "0.5f", as programs write it.
    const bool isWhole = stop == end || (stop + 1 == end && (*stop == 'f' || *stop == 'F'));
    if (error == std::errc::result_out_of_range || error != std::errc() || !isWhole ||
        !std::isfinite(number))
        return {};
    return number;
}

// A number, or a percentage of `whole`.
std::optional<float> cssNumber(QString text, float whole) {
    const bool isPercentage = text.endsWith(QLatin1Char('%'));
    if (isPercentage)
        text.chop(1);
    const std::optional<float> number = numberOf(text);
    if (!number || !isPercentage)
        return number;
    return *number / 100.0F * whole;
}

std::optional<Parts> readCode(QString text) {
    if (text.startsWith(QLatin1Char('#')))
        text.remove(0, 1);
    else if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        text.remove(0, 2);
    const bool isShort = text.size() == 3 || text.size() == 4;
    if (!isShort && text.size() != 6 && text.size() != 8)
        return {};
    Parts parts;
    const int digits = isShort ? 1 : 2;
    parts.count = static_cast<int>(text.size()) / digits;
    for (int i = 0; i < parts.count; ++i) {
        int code = 0;
        for (int k = 0; k < digits; ++k) {
            const char digit = text.at(i * digits + k).toLatin1();
            const bool isDecimal = digit >= '0' && digit <= '9';
            const char lower = static_cast<char>(digit | 0x20);
            if (!isDecimal && !(lower >= 'a' && lower <= 'f'))
                return {};
            code = code * 16 + (isDecimal ? digit - '0' : lower - 'a' + 10);
        }
        parts.values[static_cast<std::size_t>(i)] =
            static_cast<float>(isShort ? code * 17 : code) / 255.0F;
    }
    return parts;
}

std::optional<Parts> readCss(const QString& text) {
    const bool isLong = text.startsWith(QLatin1String("rgba("), Qt::CaseInsensitive);
    if ((!isLong && !text.startsWith(QLatin1String("rgb("), Qt::CaseInsensitive)) ||
        !text.endsWith(QLatin1Char(')')))
        return {};
    const int start = isLong ? 5 : 4;
    QString inside = text.mid(start, text.size() - start - 1);
    inside.replace(QLatin1Char('/'), QLatin1Char(' '));
    inside.replace(QLatin1Char(','), QLatin1Char(' '));
    const QStringList items = inside.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (items.size() != 3 && items.size() != 4)
        return {};
    Parts parts;
    parts.count = static_cast<int>(items.size());
    for (int i = 0; i < parts.count; ++i) {
        const float whole = i < 3 ? 255.0F : 1.0F;
        const std::optional<float> number = cssNumber(items[i], whole);
        if (!number)
            return {};
        parts.values[static_cast<std::size_t>(i)] = *number / whole;
    }
    return parts;
}

std::optional<Parts> readName(const QString& text) {
    const bool isWord = std::all_of(text.begin(), text.end(), [](QChar each) {
        return each.unicode() < 128 && (each.isLetter() || each == QLatin1Char(' '));
    });
    if (!isWord || !QColor::isValidColor(text))
        return {};
    const QColor color(text);
    const auto part = [](int code) { return static_cast<float>(code) / 255.0F; };
    Parts parts;
    parts.values = {part(color.red()), part(color.green()), part(color.blue()),
                    part(color.alpha())};
    parts.count = color.alpha() == 255 ? 3 : 4;
    return parts;
}

QString withoutBrackets(const QString& text) {
    static constexpr std::array<const char*, 3> Pairs{"{}", "[]", "()"};
    for (const char* pair : Pairs) {
        if (text.size() >= 2 && text.startsWith(QLatin1Char(pair[0])) &&
            text.endsWith(QLatin1Char(pair[1])))
            return text.mid(1, text.size() - 2).trimmed();
    }
    return text;
}

QStringList numberItems(QString text) {
    const QLatin1Char space(' ');
    const QLatin1Char comma(',');
    const QLatin1Char semicolon(';');
    const bool hasDecimalCommas =
        text.contains(semicolon) ||
        (text.contains(space) && text.contains(comma) && !text.contains(QLatin1String(", ")) &&
         !text.contains(QLatin1String(" ,")));
    text.replace(semicolon, space);
    text.replace(comma, hasDecimalCommas ? QLatin1Char('.') : space);
    return text.split(space, Qt::SkipEmptyParts);
}

std::optional<Parts> readNumbers(const QString& text) {
    const QStringList items = numberItems(withoutBrackets(text));
    if (items.size() != 3 && items.size() != 4)
        return {};
    Parts parts;
    parts.count = static_cast<int>(items.size());
    for (int i = 0; i < parts.count; ++i) {
        const std::optional<float> number = numberOf(items[i]);
        if (!number)
            return {};
        parts.values[static_cast<std::size_t>(i)] = *number + 0.0F;
    }
    return parts;
}

void appendNumber(QString& text, float number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number + 0.0F).ptr;
    if (!text.isEmpty())
        text += QLatin1Char(' ');
    text += QString::fromLatin1(digits.data(), static_cast<int>(end - digits.data()));
}

} // namespace

ColorText readColorText(const QString& text, const DisplayCall& display) {
    ColorText result;
    if (text.size() > LongestColorText)
        return result;
    QString plain = text.simplified();
    plain.replace(QChar(0x2212), QLatin1Char('-'));
    while (plain.endsWith(QLatin1Char(';')))
        plain = plain.chopped(1).trimmed();
    const std::optional<Parts> light = readNumbers(plain);
    std::optional<Parts> shown;
    if (!light)
        shown = readCode(plain);
    if (!light && !shown)
        shown = readName(plain);
    if (!light && !shown)
        shown = readCss(plain);
    if (!light && !shown)
        return result;
    const Parts& parts = light ? *light : *shown;
    const auto& [red, green, blue, alpha] = parts.values;
    const float limited = std::clamp(alpha, 0.0F, 1.0F);
    std::optional<ColorValue> color = ColorValue{red, green, blue, limited};
    if (shown)
        color = display.colorOf({red, green, blue}, limited);
    result.problem = color ? ColorText::None : ColorText::NoWayBack;
    result.color = color.value_or(ColorValue());
    result.hasAlpha = color && parts.count == 4;
    return result;
}

ColorCode colorCode(const ColorValue& color, const DisplayCall& display) {
    const std::array<float, 3> shown = display.displayed(color);
    ColorCode code;
    code.text = QStringLiteral("#");
    const auto append = [&](float part) {
        code.text += QStringLiteral("%1").arg(eightBits(part), 2, 16, QLatin1Char('0'));
    };
    for (const float part : shown) {
        append(part);
        code.isClipped = code.isClipped || !(part >= -HalfCode && part <= 1.0F + HalfCode);
    }
    if (eightBits(color.alpha) < 255)
        append(color.alpha);
    return code;
}

QString colorNumbers(const ColorValue& color, bool withAlpha) {
    QString text;
    for (const float part : {color.red, color.green, color.blue})
        appendNumber(text, part);
    if (withAlpha)
        appendNumber(text, color.alpha);
    return text;
}

QString colorPlainText(const ColorValue& color, const DisplayCall& display) {
    const ColorCode code = colorCode(color, display);
    return code.isClipped || !display.isInvertible() ? colorNumbers(color) : code.text;
}

} // namespace Kestrel::UI
