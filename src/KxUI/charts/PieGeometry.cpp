#include <KxUI/charts/PieGeometry_p.h>

#include <KxUI/charts/PieShares.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

std::vector<PieSector> pieSectors(const std::vector<PieSlice>& slices,
                                  const std::vector<bool>& visible, double othersBelow) {
    double largest = 0;
    const auto counts = [&](std::size_t i) {
        return visible[i] && std::isfinite(slices[i].value) && slices[i].value > 0;
    };
    for (std::size_t i = 0; i < slices.size(); ++i)
        largest = counts(i) ? std::max(largest, slices[i].value) : largest;
    double sum = 0;
    for (std::size_t i = 0; i < slices.size(); ++i)
        sum += counts(i) ? slices[i].value / largest : 0;
    const auto share = [&](std::size_t i) { return slices[i].value / largest / sum; };
    int small = 0;
    for (std::size_t i = 0; i < slices.size(); ++i)
        small += counts(i) && share(i) < othersBelow ? 1 : 0;
    std::vector<PieSector> sectors;
    PieSector others;
    others.slice = -1;
    for (std::size_t i = 0; i < slices.size(); ++i) {
        if (!counts(i))
            continue;
        if (small > 1 && share(i) < othersBelow)
            others.value += slices[i].value;
        else
            sectors.push_back({int(i), slices[i].value, 0, 0, 0});
    }
    if (others.value > 0)
        sectors.push_back(others);
    std::vector<double> values;
    for (const PieSector& sector : sectors)
        values.push_back(sector.value);
    const std::vector<double> percents = PieShares::percentages(values);
    double turned = 0;
    for (std::size_t i = 0; i < sectors.size(); ++i) {
        sectors[i].percent = percents[i];
        sectors[i].begin = turned / sum;
        turned += sectors[i].value / largest;
        sectors[i].end = i + 1 == sectors.size() ? 1 : turned / sum;
    }
    return sectors;
}

QPointF onPie(const QPointF& middle, double radius, double turn) {
    const double angle = turn * 2 * M_PI;
    return middle + QPointF(std::sin(angle), -std::cos(angle)) * radius;
}

std::vector<QPointF> sectorOutline(const PieSector& sector, const QPointF& middle, double inner,
                                   double outer) {
    const double span = sector.end - sector.begin;
    const int steps = std::max(2, int(std::ceil(span * 2 * M_PI * outer / 3)));
    std::vector<QPointF> outline;
    for (int i = 0; i <= steps; ++i)
        outline.push_back(onPie(middle, outer, sector.begin + span * i / steps));
    if (inner <= 0) {
        if (span < 1)
            outline.push_back(middle);
        return outline;
    }
    for (int i = steps; i >= 0; --i)
        outline.push_back(onPie(middle, inner, sector.begin + span * i / steps));
    return outline;
}

std::vector<double> spreadLabels(std::vector<double> wanted, double height, double top,
                                 double bottom) {
    double least = top;
    for (double& place : wanted) {
        place = std::max(place, least);
        least = place + height;
    }
    double most = bottom - height;
    for (auto place = wanted.rbegin(); place != wanted.rend(); ++place) {
        *place = std::min(*place, most);
        most = *place - height;
    }
    return wanted;
}

} // namespace Kestrel::UI
