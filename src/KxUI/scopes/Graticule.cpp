#include <KxUI/scopes/Graticule_p.h>

#include <KxUI/draw/Ticks.h>
#include <KxUI/scopes/CountingKernels_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double LeastGap = 28; // logical pixels between lines that are planned
constexpr double TextGap = 2;   // between texts
constexpr int FewLines = 3;     // so many at least are seen
constexpr double Close = 1e-9;

double toUnit(const GraticuleRules& rules, double value) {
    return rules.chroma ? chromaToScopeUnit(rules.unit, value, rules.encoding)
                        : toScopeUnit(rules.unit, value, rules.encoding);
}

double fromUnit(const GraticuleRules& rules, double number) {
    return rules.chroma ? chromaFromScopeUnit(rules.unit, number, rules.encoding)
                        : fromScopeUnit(rules.unit, number, rules.encoding);
}

bool isInside(const GraticuleRules& rules, double value) {
    return value >= rules.lower - Close && value <= rules.upper + Close;
}

// What the unit is read at, where it is not spread evenly.
std::vector<double> landmarks(const GraticuleRules& rules) {
    switch (rules.unit) {
    case ScopeUnit::NitsSdr:
        return {0, 1, 5, 10, 20, 40, 60, 80, 100, 150, 200};
    case ScopeUnit::NitsPq:
    case ScopeUnit::NitsHlg:
        return {0, 0.1, 1, 10, 100, 203, 400, 1000, 2000, 4000, 10000};
    case ScopeUnit::Stops: {
        std::vector<double> stops;
        for (int stop = -12; stop <= 12; ++stop)
            stops.push_back(stop);
        return stops;
    }
    default:
        return {};
    }
}

void add(const GraticuleRules& rules, double value, GraticuleLine::Weight weight,
         std::vector<GraticuleLine>& lines, const QColor& color = QColor()) {
    if (!std::isfinite(value) || !isInside(rules, value))
        return;
    const auto position = [&rules](double each) {
        return rules.position ? rules.position(each) : each;
    };
    const double lower = position(rules.lower);
    const double place = (position(value) - lower) / (position(rules.upper) - lower);
    lines.push_back({value, place, weight, QString(), color});
}

// Quarters of the signal, in whatever unit they are told.
void addQuarters(const GraticuleRules& rules, std::vector<GraticuleLine>& lines) {
    constexpr double Quarter = 0.25;
    const double first = rules.chroma ? -0.5 : 0.0;
    for (int i = 0; i <= 4; ++i) {
        const bool end = i == 0 || i == 4 || (rules.chroma && i == 2);
        add(rules, first + i * Quarter, end ? GraticuleLine::Strong : GraticuleLine::Faint, lines);
    }
}

void addSteps(const GraticuleRules& rules, std::vector<GraticuleLine>& lines) {
    Ticks::Rules steps;
    steps.length = rules.length;
    const double half = LeastGap / 1.5; // half a label is left between each two
    steps.labelLength = [half](const QString&) { return half; };
    const Ticks ticks = Ticks::plan(toUnit(rules, rules.lower), toUnit(rules, rules.upper), steps);
    for (const double number : ticks.values)
        add(rules, fromUnit(rules, number), GraticuleLine::Faint, lines);
}

void addLandmarks(const GraticuleRules& rules, std::vector<GraticuleLine>& lines) {
    for (const double number : landmarks(rules)) {
        const bool isWhite = rules.unit == ScopeUnit::Stops     ? number == 0
                             : rules.unit == ScopeUnit::NitsSdr ? number == 100
                                                                : number == 203;
        add(rules, fromUnit(rules, number),
            isWhite || number == 0 ? GraticuleLine::Strong : GraticuleLine::Faint, lines);
    }
}

void addGiven(const GraticuleRules& rules, std::vector<GraticuleLine>& lines) {
    for (const double value : rules.landmarks)
        add(rules, value, value == 0 || value == 1 ? GraticuleLine::Strong : GraticuleLine::Faint,
            lines);
}

// Gives texts, those that matter most first, where they have room.
void addTexts(const GraticuleRules& rules, std::vector<GraticuleLine>& lines) {
    struct Span {
        double begin;
        double end;
    };
    std::vector<Span> taken;
    constexpr std::array<GraticuleLine::Weight, 4> Order{
        GraticuleLine::Strong, GraticuleLine::User, GraticuleLine::Faint, GraticuleLine::Limit};
    for (const GraticuleLine::Weight weight : Order) {
        for (GraticuleLine& line : lines) {
            if (line.weight != weight || weight == GraticuleLine::Limit)
                continue;
            const QString text =
                graticuleText(line.value, rules.chroma, rules.unit, rules.encoding, rules.locale);
            const double size = rules.textLength ? rules.textLength(text) + TextGap : 0;
            const double middle = line.place * rules.length;
            const Span span{middle - size / 2, middle + size / 2};
            const bool free = std::all_of(taken.begin(), taken.end(), [&span](const Span& each) {
                return span.end <= each.begin || span.begin >= each.end;
            });
            if (!free)
                continue;
            line.text = text;
            taken.push_back(span);
        }
    }
}

} // namespace

QString graticuleText(double value, bool chroma, ScopeUnit unit, const ScopeEncoding& encoding,
                      const QLocale& locale) {
    const double number =
        chroma ? chromaToScopeUnit(unit, value, encoding) : toScopeUnit(unit, value, encoding);
    if (std::isnan(number))
        return QStringLiteral("nan");
    if (std::isinf(number))
        return number < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    QLocale plain = locale;
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    // As few digits as tell it.
    const int most = scopeUnitDecimals(unit, number);
    int digits = 0;
    const auto shift = [](int places) { return std::pow(10.0, places); };
    const auto rounded = [&](int places) {
        return std::round(number * shift(places)) / shift(places);
    };
    while (digits < most && std::fabs(rounded(digits) - rounded(most)) > Close)
        ++digits;
    const double shown = rounded(digits);
    return plain.toString(shown == 0 ? 0 : shown, 'f', digits);
}

std::vector<GraticuleLine> planGraticule(const GraticuleRules& rules) {
    std::vector<GraticuleLine> lines;
    if (!(rules.upper > rules.lower) || !std::isfinite(rules.upper - rules.lower))
        return lines;
    if (!rules.landmarks.empty())
        addGiven(rules, lines);
    else if (!rules.chroma && !landmarks(rules).empty())
        addLandmarks(rules, lines);
    else if (rules.unit != ScopeUnit::Value)
        addQuarters(rules, lines);
    if (int(lines.size()) < FewLines && rules.landmarks.empty() &&
        (rules.chroma || landmarks(rules).empty())) {
        lines.clear();
        addSteps(rules, lines);
        for (GraticuleLine& line : lines) {
            if (std::fabs(line.value) < Close || std::fabs(line.value - 1) < Close)
                line.weight = GraticuleLine::Strong;
        }
    }
    if (rules.limits && !rules.chroma) {
        add(rules, double(EbuR103Lower), GraticuleLine::Limit, lines);
        add(rules, double(EbuR103Upper), GraticuleLine::Limit, lines);
    }
    for (const ScopeLine& line : rules.userLines)
        add(rules, line.value, GraticuleLine::User, lines, line.color);
    std::stable_sort(
        lines.begin(), lines.end(),
        [](const GraticuleLine& a, const GraticuleLine& b) { return a.value < b.value; });
    addTexts(rules, lines);
    return lines;
}

} // namespace Kestrel::UI
