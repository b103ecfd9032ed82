#include <KxUI/charts/LineSeries.h>

#include <KxUI/charts/LineSeries_p.h>
#include <KxUI/kit/InterfaceThread_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

std::size_t nearestPoint(const LineData& data, double x) {
    const std::size_t after = data.firstFrom(x);
    if (after == data.size())
        return after - 1;
    const bool isBefore = after > 0 && x - data.x(after - 1) < data.x(after) - x;
    return isBefore ? after - 1 : after;
}

LineSeries::LineSeries(QObject* parent)
    : ChartSeries(parent)
    , d(std::make_unique<LineSeriesPrivate>()) {}

LineSeries::~LineSeries() = default;

void LineSeries::setData(std::vector<double> x, std::vector<double> y) {
    KXUI_INTERFACE_THREAD(this);
    d->data.assign(std::move(x), std::move(y));
    Q_EMIT dataChanged();
}

bool LineSeries::append(double x, double y) {
    KXUI_INTERFACE_THREAD(this);
    const bool isTaken = d->data.append(x, y);
    if (isTaken)
        Q_EMIT dataChanged();
    return isTaken;
}

void LineSeries::clear() {
    setData({}, {});
}

std::size_t LineSeries::capacity() const {
    return d->data.capacity();
}

void LineSeries::setCapacity(std::size_t points) {
    KXUI_INTERFACE_THREAD(this);
    const std::size_t before = size();
    d->data.setCapacity(points);
    if (size() != before)
        Q_EMIT dataChanged();
}

std::size_t LineSeries::size() const {
    return d->data.size();
}

QPointF LineSeries::at(std::size_t index) const {
    return index < size() ? QPointF(d->data.x(index), d->data.y(index)) : QPointF(qQNaN(), qQNaN());
}

QPointF LineSeries::nearest(double x) const {
    return size() == 0 ? at(0) : at(nearestPoint(d->data, x));
}

LineSeries::Style LineSeries::style() const {
    return d->style;
}

void LineSeries::setStyle(Style style) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->style, style) != style)
        Q_EMIT lookChanged();
}

double LineSeries::width() const {
    return d->width;
}

void LineSeries::setWidth(double width) {
    KXUI_INTERFACE_THREAD(this);
    const double limited = width >= 0.5 ? std::min(width, 8.0) : 0.5;
    if (std::exchange(d->width, limited) != limited)
        Q_EMIT lookChanged();
}

bool LineSeries::isOnRightAxis() const {
    return d->isOnRightAxis;
}

void LineSeries::setOnRightAxis(bool right) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isOnRightAxis, right) != right)
        Q_EMIT lookChanged();
}

} // namespace Kestrel::UI
