#include <KxUI/charts/LineChart.h>

#include <KxUI/charts/ChartAxis.h>
#include <KxUI/charts/LineChart_p.h>
#include <KxUI/charts/SeriesKeeping_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <cmath>

namespace Kestrel::UI {

LineChart::LineChart(QWidget* parent)
    : Chart(std::make_unique<LineChartPrivate>(), parent)
    , p(static_cast<LineChartPrivate*>(ChartPrivate::of(this))) {
    p->start(this);
}

LineChart::~LineChart() = default;

void LineChart::addSeries(LineSeries* series) {
    KXUI_INTERFACE_THREAD(this);
    takeIn(this, *p, p->series, series);
}

void LineChart::removeSeries(LineSeries* series) {
    KXUI_INTERFACE_THREAD(this);
    giveBack(*p, p->series, series);
}

std::vector<LineSeries*> LineChart::series() const {
    return p->series;
}

ChartAxis* LineChart::xAxis() const {
    return p->xAxis;
}

ChartAxis* LineChart::yAxis() const {
    return p->yAxis;
}

ChartAxis* LineChart::rightAxis() const {
    return p->rightAxis;
}

void LineChart::setBands(const std::vector<ChartBand>& bands) {
    KXUI_INTERFACE_THREAD(this);
    p->bands = bands;
    p->lookChanged();
}

bool LineChart::isFollowing() const {
    return p->isFollowing;
}

void LineChart::setFollowing(bool following) {
    KXUI_INTERFACE_THREAD(this);
    p->setFollowing(following);
}

double LineChart::cursor() const {
    return p->cursor;
}

void LineChart::setCursor(double x) {
    KXUI_INTERFACE_THREAD(this);
    if (p->cursor == x || (std::isnan(p->cursor) && std::isnan(x)))
        return;
    p->setCursor(x);
    Q_EMIT cursorChanged(x);
}

void LineChart::linkTo(LineChart* other) {
    KXUI_INTERFACE_THREAD(this);
    for (QMetaObject::Connection& link : p->links)
        disconnect(link);
    p->linked = other == this ? nullptr : other;
    if (!p->linked)
        return;
    // Setting the same range tells nothing, which ends the round.
    const auto follow = [](LineChart* from, LineChart* to) {
        return connect(from->xAxis(), &ChartAxis::rangeChanged, to->xAxis(), &ChartAxis::setRange);
    };
    p->links = {follow(other, this), follow(this, other)};
    p->xAxis->setRange(other->xAxis()->lower(), other->xAxis()->upper());
}

void LineChart::showAll() {
    KXUI_INTERFACE_THREAD(this);
    p->showAll();
}

} // namespace Kestrel::UI
