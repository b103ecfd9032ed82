#include <KxUI/charts/BarChart.h>

#include <KxUI/charts/BarChart_p.h>
#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/SeriesKeeping_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <utility>

namespace Kestrel::UI {

BarChart::BarChart(QWidget* parent)
    : Chart(std::make_unique<BarChartPrivate>(), parent)
    , p(static_cast<BarChartPrivate*>(ChartPrivate::of(this))) {
    p->start(this);
}

BarChart::~BarChart() = default;

void BarChart::addSeries(BarSeries* series) {
    KXUI_INTERFACE_THREAD(this);
    takeIn(this, *p, p->series, series);
}

void BarChart::removeSeries(BarSeries* series) {
    KXUI_INTERFACE_THREAD(this);
    giveBack(*p, p->series, series);
}

std::vector<BarSeries*> BarChart::series() const {
    return p->series;
}

ChartAxis* BarChart::categoryAxis() const {
    return p->categoryAxis;
}

ChartAxis* BarChart::valueAxis() const {
    return p->valueAxis;
}

BarChart::Arrangement BarChart::arrangement() const {
    return p->arrangement;
}

void BarChart::setArrangement(Arrangement arrangement) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(p->arrangement, arrangement) == arrangement)
        return;
    p->itemsChanged();
    Q_EMIT layoutChanged();
}

Qt::Orientation BarChart::orientation() const {
    return p->orientation;
}

void BarChart::setOrientation(Qt::Orientation orientation) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(p->orientation, orientation) == orientation)
        return;
    p->itemsChanged();
    Q_EMIT layoutChanged();
}

bool BarChart::isSorted() const {
    return p->isSorted;
}

void BarChart::setSorted(bool sorted) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(p->isSorted, sorted) == sorted)
        return;
    p->itemsChanged();
    Q_EMIT layoutChanged();
}

} // namespace Kestrel::UI
