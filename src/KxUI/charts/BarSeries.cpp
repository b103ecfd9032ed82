#include <KxUI/charts/BarSeries.h>

#include <KxUI/kit/InterfaceThread_p.h>

#include <utility>

namespace Kestrel::UI {

class BarSeriesPrivate {
public:
    std::vector<double> values;
};

BarSeries::BarSeries(QObject* parent)
    : ChartSeries(parent)
    , d(std::make_unique<BarSeriesPrivate>()) {}

BarSeries::~BarSeries() = default;

std::vector<double> BarSeries::values() const {
    return d->values;
}

void BarSeries::setValues(std::vector<double> values) {
    KXUI_INTERFACE_THREAD(this);
    d->values = std::move(values);
    Q_EMIT dataChanged();
}

} // namespace Kestrel::UI
