#include "CurveModel.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// A bend that is narrower than a quarter of a part may show a little too flat.
constexpr int SamplesPerPart = 4;

int partOf(double x, double from, double to, int count) {
    const double part = std::floor((x - from) / (to - from) * count);
    return part >= 0 ? int(std::min(part, double(count - 1))) : 0;
}

} // namespace

CurveModel::CurveModel(QObject* parent)
    : QObject(parent) {}

CurveModel::~CurveModel() = default;

QColor CurveModel::color(int, const QPalette& palette) const {
    return palette.color(QPalette::Text);
}

void CurveModel::places(int curve, int first, int count, QPointF* out) const {
    for (int i = 0; i < count; ++i) {
        const Knot each = knot(curve, first + i);
        out[i] = {each.x, each.y};
    }
}

std::vector<int> CurveModel::selectedKnots(int curve) const {
    std::vector<int> selected;
    const int end = knots(curve);
    for (int i = 0; i < end; ++i) {
        if (knot(curve, i).selected)
            selected.push_back(i);
    }
    return selected;
}

void CurveModel::ranges(int curve, double from, double to, int count, double* low,
                        double* high) const {
    if (count <= 0)
        return;
    // Neighbouring parts share the sample between them, so that no gap opens in a steep line.
    std::vector<double> values(std::size_t(count) * SamplesPerPart + 1);
    sample(curve, from, to, int(values.size()), values.data());
    for (int part = 0; part < count; ++part) {
        const auto first = values.begin() + std::ptrdiff_t(part) * SamplesPerPart;
        const auto [least, most] = std::minmax_element(first, first + SamplesPerPart + 1);
        low[part] = *least;
        high[part] = *most;
    }
    const int end = knots(curve);
    for (int i = firstKnotFrom(curve, from); i < end && from < to; ++i) {
        QPointF place;
        places(curve, i, 1, &place);
        if (place.x() > to)
            break;
        const int part = partOf(place.x(), from, to, count);
        low[part] = std::min(low[part], place.y());
        high[part] = std::max(high[part], place.y());
    }
}

bool CurveModel::setShape(int, const std::vector<int>&, int) {
    return false;
}

bool CurveModel::setSlopes(int, int, double, double, bool) {
    return false;
}

} // namespace Kestrel::UI
