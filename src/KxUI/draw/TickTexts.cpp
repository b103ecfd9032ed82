#include <KxUI/draw/Ticks.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

// What a unit is shown in.
struct Shown {
    double factor; // values are divided by it
    const char* name;
};

constexpr std::array<Shown, 9> Prefixes{{{1e12, "T"},
                                         {1e9, "G"},
                                         {1e6, "M"},
                                         {1e3, "k"},
                                         {1, ""},
                                         {1e-3, "m"},
                                         {1e-6, "\u00b5"},
                                         {1e-9, "n"},
                                         {1e-12, "p"}}};
constexpr std::array<Shown, 3> Fractions{{{1, " s"}, {1e-3, " ms"}, {1e-6, " \u00b5s"}}};
constexpr std::array<Shown, 5> ByteSizes{
    {{0x1p40, " TiB"}, {0x1p30, " GiB"}, {0x1p20, " MiB"}, {0x1p10, " KiB"}, {1, " B"}}};

// Thousands are read well without a prefix; so are hundredths.
constexpr double LeastPrefixed = 10000;
constexpr double MostUnprefixed = 1e15;

template <std::size_t Size>
Shown largestBelow(const std::array<Shown, Size>& all, double largest) {
    for (const Shown& each : all)
        if (each.factor <= largest * (1 + 1e-9))
            return each;
    return all.back();
}

Shown shownIn(Ticks::Unit unit, double largest) {
    switch (unit) {
    case Ticks::Percent:
        return {0.01, " %"};
    case Ticks::Seconds:
        return largestBelow(Fractions, largest);
    case Ticks::Bytes:
        return largestBelow(ByteSizes, largest);
    case Ticks::Frames:
        return {1, ""};
    case Ticks::Plain:
        break;
    }
    const bool isOrdinary = largest < LeastPrefixed && largest >= 0.01;
    return isOrdinary || largest == 0 ? Shown{1, ""} : largestBelow(Prefixes, largest);
}

// The digits behind the point that tell the multiples of a step apart.
int decimalsOf(double step) {
    for (int decimals = 0; decimals < 15; ++decimals) {
        const double scaled = step * std::pow(10.0, decimals);
        if (scaled >= 0.999 && std::abs(scaled - std::round(scaled)) < 1e-6 * scaled)
            return decimals;
    }
    return 15;
}

QString fixed(double value, int decimals, QLocale locale) {
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const QString text = locale.toString(value, 'f', decimals);
    // What rounds to 0 has no sign.
    const bool isZero = std::abs(value) * std::pow(10.0, decimals) < 0.5;
    return isZero && value < 0 ? locale.toString(0.0, 'f', decimals) : text;
}

QString clock(double seconds, int decimals, const QLocale& locale) {
    const double unit = std::pow(10.0, decimals);
    const double whole = std::round(std::abs(seconds) * unit) / unit;
    const double hours = std::floor(whole / 3600);
    const double minutes = std::floor((whole - hours * 3600) / 60);
    const double rest = whole - hours * 3600 - minutes * 60;
    const auto two = [](const QString& text) {
        return text.size() > 1 && text[1].isDigit() ? text : QLatin1Char('0') + text;
    };
    const QString sign = seconds < 0 && whole > 0 ? QStringLiteral("-") : QString();
    const QString ofSeconds = two(fixed(rest, decimals, locale));
    const QString ofMinutes = QString::number(minutes, 'f', 0);
    if (hours == 0)
        return sign + ofMinutes + QLatin1Char(':') + ofSeconds;
    return sign + QString::number(hours, 'f', 0) + QLatin1Char(':') + two(ofMinutes) +
           QLatin1Char(':') + ofSeconds;
}

} // namespace

QString Ticks::text(double value, double step, double largest, Unit unit, const QLocale& locale) {
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    largest = std::max({std::abs(largest), std::abs(value), std::isfinite(step) ? step : 0});
    const Shown shown = shownIn(unit, largest);
    if (!(step > 0 && std::isfinite(step))) {
        const double read = largest / shown.factor;
        step =
            read > 0 ? shown.factor * std::pow(10.0, std::floor(std::log10(read) + 1e-9) - 3) : 1;
    }
    if (unit == Seconds && largest >= 60)
        return clock(value, std::min(3, decimalsOf(std::min(step, 1.0))), locale);
    const double number = value / shown.factor;
    const QString name = QString::fromUtf8(shown.name);
    if (largest >= MostUnprefixed || (largest > 0 && largest < 1e-13))
        return locale.toString(value, 'g', 6);
    const int most = unit == Frames || (unit == Bytes && shown.factor == 1) ? 0 : 12;
    QString text = fixed(number, std::min(most, decimalsOf(step / shown.factor)), locale);
    return text + name;
}

} // namespace Kestrel::UI
