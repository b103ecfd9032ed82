#include <KxUI/charts/PieSeries.h>

#include <KxUI/charts/PieShares.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace Kestrel::UI {
namespace {

bool isDrawable(double value) {
    return std::isfinite(value) && value >= 0;
}

QString keyOf(const PieSlice& slice) {
    return slice.key.isEmpty() ? slice.name : slice.key;
}

} // namespace

std::vector<double> PieShares::percentages(const std::vector<double>& values, int decimals) {
    const double whole = 100 * std::pow(10.0, std::clamp(decimals, 0, 3));
    std::vector<double> shares(values.size());
    // Scaled down first: the sum of the largest doubles stays finite.
    double largest = 0;
    for (const double value : values)
        largest = isDrawable(value) ? std::max(largest, value) : largest;
    if (largest == 0)
        return shares;
    std::vector<double> parts(values.size());
    double sum = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        sum += parts[i] = isDrawable(values[i]) ? values[i] / largest : 0;
    double left = whole;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i] = parts[i] / sum * whole;
        shares[i] = std::floor(parts[i]);
        left -= shares[i];
    }
    std::vector<std::size_t> order(parts.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return parts[a] - shares[a] > parts[b] - shares[b];
    });
    for (std::size_t i = 0; i < order.size() && left > 0; ++i, --left)
        ++shares[order[i]];
    for (double& share : shares)
        share = share * 100 / whole;
    return shares;
}

class PieSeriesPrivate {
public:
    std::vector<PieSlice> slices;
    std::vector<bool> hidden;
    double hole = 0.55;
    double othersBelow = 0.015;
    Ticks::Unit unit = Ticks::Plain;
};

PieSeries::PieSeries(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<PieSeriesPrivate>()) {}

PieSeries::~PieSeries() = default;

std::vector<PieSlice> PieSeries::slices() const {
    return d->slices;
}

void PieSeries::setSlices(std::vector<PieSlice> slices) {
    KXUI_INTERFACE_THREAD(this);
    std::vector<bool> hidden(slices.size());
    for (std::size_t i = 0; i < std::min(slices.size(), d->slices.size()); ++i)
        hidden[i] = d->hidden[i] && keyOf(slices[i]) == keyOf(d->slices[i]);
    d->slices = std::move(slices);
    d->hidden = std::move(hidden);
    Q_EMIT changed();
}

int PieSeries::invalidCount() const {
    return int(std::count_if(d->slices.begin(), d->slices.end(),
                             [](const PieSlice& slice) { return !isDrawable(slice.value); }));
}

bool PieSeries::isSliceVisible(int index) const {
    return index < 0 || index >= int(d->hidden.size()) || !d->hidden[std::size_t(index)];
}

void PieSeries::setSliceVisible(int index, bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (isSliceVisible(index) == visible || index < 0 || index >= int(d->hidden.size()))
        return;
    d->hidden[std::size_t(index)] = !visible;
    Q_EMIT changed();
}

double PieSeries::hole() const {
    return d->hole;
}

void PieSeries::setHole(double part) {
    KXUI_INTERFACE_THREAD(this);
    const double limited = part > 0 ? std::min(part, 0.9) : 0;
    if (std::exchange(d->hole, limited) != limited)
        Q_EMIT changed();
}

double PieSeries::othersBelow() const {
    return d->othersBelow;
}

void PieSeries::setOthersBelow(double share) {
    KXUI_INTERFACE_THREAD(this);
    const double limited = share > 0 ? std::min(share, 0.5) : 0;
    if (std::exchange(d->othersBelow, limited) != limited)
        Q_EMIT changed();
}

Ticks::Unit PieSeries::unit() const {
    return d->unit;
}

void PieSeries::setUnit(Ticks::Unit unit) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->unit, unit) != unit)
        Q_EMIT changed();
}

} // namespace Kestrel::UI
