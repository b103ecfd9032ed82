#include <KxUI/charts/PieChart.h>

#include <KxUI/charts/PieChart_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <utility>

namespace Kestrel::UI {

PieChart::PieChart(QWidget* parent)
    : Chart(std::make_unique<PieChartPrivate>(), parent)
    , p(static_cast<PieChartPrivate*>(ChartPrivate::of(this))) {
    p->take(this, new PieSeries);
}

PieChart::~PieChart() = default;

void PieChart::setSeries(PieSeries* series) {
    KXUI_INTERFACE_THREAD(this);
    if (!series || series != p->series)
        p->take(this, series ? series : new PieSeries);
}

PieSeries* PieChart::series() const {
    return p->series;
}

PieChart::LabelPlace PieChart::labelPlace() const {
    return p->labelPlace;
}

void PieChart::setLabelPlace(LabelPlace place) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(p->labelPlace, place) == place)
        return;
    p->lookChanged();
    Q_EMIT labelPlaceChanged();
}

} // namespace Kestrel::UI
