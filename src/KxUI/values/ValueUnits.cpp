#include <KxUI/values/ValueUnits.h>

#include <KxUI/values/NumberFunctions_p.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QSharedData>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kestrel::UI {
namespace {

struct KnownUnit {
    ValueUnits::Unit unit;
    // A hundredth divides better than it multiplies: 7 * 0.01 is not 0.07. 0 where neither is
    // whole.
    double divisor = 0.0;
};

bool isReachable(const QString& name) {
    if (name.isEmpty() || name.front().isSpace() || name.front().isDigit())
        return false;
    return !QStringLiteral("+-*/^().,;").contains(name.front());
}

double divisorOf(double factor) {
    const double divisor = std::round(1.0 / factor);
    return std::fabs(factor) < 1.0 && 1.0 / divisor == factor ? divisor : 0.0;
}

// Not "mmx": a symbol of letters ends where the letters end.
bool beginsWith(QStringView text, const QString& name, Qt::CaseSensitivity sensitivity) {
    if (!text.startsWith(QStringView(name), sensitivity))
        return false;
    return text.size() == name.size() || !name.back().isLetter() || !text[name.size()].isLetter();
}

ValueUnits of(std::initializer_list<ValueUnits::Unit> units) {
    ValueUnits result;
    for (const ValueUnits::Unit& unit : units)
        result.add(unit);
    return result;
}

} // namespace

class ValueUnitsData : public QSharedData {
public:
    std::vector<KnownUnit> units;

    /** The longest symbol, as match(); -1 as well where several units fit. */
    int match(QStringView text, Qt::CaseSensitivity sensitivity, int& length) const {
        int found = -1;
        bool several = false;
        length = 0;
        for (std::size_t i = 0; i < units.size(); ++i) {
            const auto tryName = [&](const QString& name) {
                const int size = int(name.size());
                if (size < length || !beginsWith(text, name, sensitivity))
                    return;
                several = size == length && found >= 0 && found != int(i);
                found = int(i);
                length = size;
            };
            tryName(units[i].unit.symbol);
            for (const QString& alias : units[i].unit.aliases)
                tryName(alias);
        }
        return several ? -1 : found;
    }
};

ValueUnits::ValueUnits()
    : d(new ValueUnitsData) {}

ValueUnits::ValueUnits(const ValueUnits& other) = default;
ValueUnits& ValueUnits::operator=(const ValueUnits& other) = default;
ValueUnits::~ValueUnits() = default;

ValueUnits ValueUnits::suffix(const QString& text) {
    return of({{text.trimmed(), {}}});
}

ValueUnits ValueUnits::percent() {
    return of({{QStringLiteral("%"), {}, 0.01}});
}

ValueUnits ValueUnits::pixels() {
    return of({{QStringLiteral("px"), {}}});
}

ValueUnits ValueUnits::length(double pixelsPerInch) {
    ValueUnits units = pixels();
    if (!std::isfinite(pixelsPerInch) || pixelsPerInch <= 0.0)
        return units;
    units.add({QStringLiteral("in"), {QStringLiteral("\"")}, pixelsPerInch});
    units.add({QStringLiteral("cm"), {}, pixelsPerInch / 2.54});
    units.add({QStringLiteral("mm"), {}, pixelsPerInch / 25.4});
    units.add({QStringLiteral("pt"), {}, pixelsPerInch / 72.0});
    units.add({QStringLiteral("pc"), {}, pixelsPerInch / 6.0});
    return units;
}

ValueUnits ValueUnits::angle() {
    return of({{QStringLiteral("\u00b0"), {QStringLiteral("deg")}},
               {QStringLiteral("rad"), {}, 180.0 / Pi},
               {QStringLiteral("turn"), {}, 360.0},
               {QStringLiteral("'"), {QStringLiteral("arcmin")}, 1.0 / 60.0},
               {QStringLiteral("\""), {QStringLiteral("arcsec")}, 1.0 / 3600.0}});
}

ValueUnits ValueUnits::stops() {
    return of({{QStringLiteral("x"), {}},
               {QStringLiteral("stops"),
                {QStringLiteral("stop"), QStringLiteral("ev")},
                1.0,
                0.0,
                true}});
}

ValueUnits ValueUnits::frames(Base::TimeBase rate) {
    ValueUnits units = of({{QStringLiteral("f"), {}}});
    if (rate.numerator() == 0 || rate.denominator() == 0)
        return units;
    const double perSecond =
        static_cast<double>(rate.numerator()) / static_cast<double>(rate.denominator());
    units.add({QStringLiteral("s"), {}, perSecond});
    units.add({QStringLiteral("ms"), {}, perSecond / 1000.0});
    return units;
}

bool ValueUnits::add(const Unit& unit) {
    if (!isReachable(unit.symbol) || !std::isfinite(unit.factor) || unit.factor == 0.0 ||
        !std::isfinite(unit.offset))
        return false;
    for (const QString& alias : unit.aliases) {
        if (!isReachable(alias))
            return false;
    }
    d->units.push_back({unit, divisorOf(unit.factor)});
    return true;
}

bool ValueUnits::isEmpty() const {
    return d->units.empty();
}

int ValueUnits::count() const {
    return int(d->units.size());
}

const ValueUnits::Unit& ValueUnits::unit(int index) const {
    return d->units[std::size_t(index)].unit;
}

int ValueUnits::indexOf(const QString& symbol) const {
    for (std::size_t i = 0; i < d->units.size(); ++i) {
        const Unit& unit = d->units[i].unit;
        if (unit.symbol == symbol || unit.aliases.contains(symbol))
            return int(i);
    }
    return -1;
}

int ValueUnits::match(QStringView text, int* length) const {
    int found = d->match(text, Qt::CaseSensitive, *length);
    if (found < 0)
        found = d->match(text, Qt::CaseInsensitive, *length);
    return found;
}

double ValueUnits::toBase(int unit, double number) const {
    const KnownUnit& known = d->units[std::size_t(unit)];
    if (known.unit.powerOfTwo)
        return std::exp2(number);
    const double scaled =
        known.divisor != 0.0 ? number / known.divisor : number * known.unit.factor;
    return scaled + known.unit.offset;
}

double ValueUnits::fromBase(int unit, double value) const {
    const KnownUnit& known = d->units[std::size_t(unit)];
    if (isLinear(unit) && known.unit.factor == 1.0)
        return value;
    const double shifted = value - known.unit.offset;
    const double number = known.unit.powerOfTwo  ? std::log2(value)
                          : known.divisor != 0.0 ? shifted * known.divisor
                                                 : shifted / known.unit.factor;
    if (!std::isfinite(number))
        return number;
    const double rounded = withoutDust(number);
    return toBase(unit, rounded) == value ? rounded : number;
}

bool ValueUnits::isLinear(int unit) const {
    const Unit& known = this->unit(unit);
    return !known.powerOfTwo && known.offset == 0.0;
}

QString ValueUnits::separator(const QString& symbol) {
    const bool isSign = !symbol.isEmpty() && !symbol.front().isLetterOrNumber();
    return isSign ? QString() : QString(QChar(0x00a0));
}

bool operator==(const ValueUnits& a, const ValueUnits& b) {
    const auto same = [](const KnownUnit& x, const KnownUnit& y) {
        return x.unit.symbol == y.unit.symbol && x.unit.aliases == y.unit.aliases &&
               x.unit.factor == y.unit.factor && x.unit.offset == y.unit.offset &&
               x.unit.powerOfTwo == y.unit.powerOfTwo;
    };
    return a.d == b.d || std::equal(a.d->units.begin(), a.d->units.end(), b.d->units.begin(),
                                    b.d->units.end(), same);
}

} // namespace Kestrel::UI
