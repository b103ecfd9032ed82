#include <KxUI/charts/ChartAxis.h>

#include <KxUI/charts/ChartAxis_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {

bool ChartAxisPrivate::show(ChartAxis* axis, double from, double to) {
    if (from > to)
        std::swap(from, to);
    if (!std::isfinite(from) || !std::isfinite(to))
        return false;
    from = std::clamp(from, lowest, highest);
    to = std::clamp(to, lowest, highest);
    if (!(from < to) || (isLogarithmic && from <= 0))
        return false;
    if (from == lower && to == upper)
        return true;
    lower = from;
    upper = to;
    Q_EMIT axis->rangeChanged(lower, upper);
    return true;
}

void ChartAxisPrivate::showData(ChartAxis* axis, double from, double to, double margin) {
    if (!(from <= to))
        return;
    const double reach = to - from;
    if (isLogarithmic) {
        const double factor = std::pow(10.0, std::max(margin, from == to ? 0.5 : 0.0));
        show(axis, from / factor, to * factor);
        return;
    }
    // A single value gets room on both sides, more than its last digit.
    const double room = reach > 1e-280 ? (std::isfinite(reach) ? reach * margin : 0)
                                       : std::max(std::abs(from) * 0.1, 0.5);
    show(axis, std::max(from - room, -DBL_MAX / 2), std::min(to + room, DBL_MAX / 2));
}

ChartAxis::ChartAxis(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<ChartAxisPrivate>()) {}

ChartAxis::~ChartAxis() = default;

double ChartAxis::lower() const {
    return d->lower;
}

double ChartAxis::upper() const {
    return d->upper;
}

void ChartAxis::setRange(double lower, double upper) {
    KXUI_INTERFACE_THREAD(this);
    const bool was = std::exchange(d->isAutomatic, false);
    if (!d->show(this, lower, upper))
        d->isAutomatic = was;
}

bool ChartAxis::isAutoRange() const {
    return d->isAutomatic;
}

void ChartAxis::setAutoRange(bool automatic) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isAutomatic, automatic) != automatic)
        Q_EMIT changed();
}

void ChartAxis::setLimits(double lowest, double highest) {
    KXUI_INTERFACE_THREAD(this);
    if (lowest > highest)
        std::swap(lowest, highest);
    if (!std::isfinite(lowest) || !std::isfinite(highest) || lowest == highest)
        return;
    d->lowest = std::max(lowest, -DBL_MAX / 2);
    d->highest = std::min(highest, DBL_MAX / 2);
    if (!d->show(this, d->lower, d->upper))
        d->show(this, d->lowest, d->highest);
}

bool ChartAxis::isLogarithmic() const {
    return d->isLogarithmic;
}

void ChartAxis::setLogarithmic(bool logarithmic) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isLogarithmic, logarithmic) == logarithmic)
        return;
    if (logarithmic && d->lower <= 0)
        d->show(this, d->upper > 0 ? d->upper / 1000 : 0.001, d->upper > 0 ? d->upper : 1);
    Q_EMIT changed();
}

Ticks::Unit ChartAxis::unit() const {
    return d->unit;
}

void ChartAxis::setUnit(Ticks::Unit unit) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->unit, unit) != unit)
        Q_EMIT changed();
}

QString ChartAxis::title() const {
    return d->title;
}

void ChartAxis::setTitle(const QString& title) {
    KXUI_INTERFACE_THREAD(this);
    if (d->title == title)
        return;
    d->title = title;
    Q_EMIT changed();
}

QStringList ChartAxis::categories() const {
    return d->categories;
}

void ChartAxis::setCategories(const QStringList& categories) {
    KXUI_INTERFACE_THREAD(this);
    if (d->categories == categories)
        return;
    d->categories = categories;
    Q_EMIT changed();
}

void ChartAxis::setFormatter(std::function<QString(double)> formatter) {
    KXUI_INTERFACE_THREAD(this);
    d->formatter = std::move(formatter);
    Q_EMIT changed();
}

bool ChartAxis::isGridVisible() const {
    return d->hasGrid;
}

void ChartAxis::setGridVisible(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->hasGrid, visible) != visible)
        Q_EMIT changed();
}

QString ChartAxis::text(double value) const {
    if (d->formatter)
        return d->formatter(value);
    if (!d->categories.isEmpty()) {
        const double place = std::round(value);
        return place >= 0 && place < double(d->categories.size()) ? d->categories[int(place)]
                                                                  : QString();
    }
    const double largest = std::max(std::abs(d->lower), std::abs(d->upper));
    const double step =
        d->isLogarithmic ? 0 : Ticks::niceStep((d->upper - d->lower) / 1000, d->unit);
    return Ticks::text(value, step, d->isLogarithmic ? value : largest, d->unit);
}

QString widestText(const ChartAxis& axis) {
    constexpr double Uneven = 0.7654; // has as many digits as the axis reads
    const double inside = axis.lower() + (axis.upper() - axis.lower()) * Uneven;
    QString widest;
    for (const double value : {axis.lower(), inside, axis.upper()})
        if (const QString text = axis.text(value); text.size() > widest.size())
            widest = text;
    return widest;
}

} // namespace Kestrel::UI
