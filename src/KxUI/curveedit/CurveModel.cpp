#include "CurveModel.h"

#include <QPalette>

namespace Kestrel::UI {

CurveModel::CurveModel(QObject* parent)
    : QObject(parent) {}

CurveModel::~CurveModel() = default;

QColor CurveModel::color(int, const QPalette& palette) const {
    return palette.color(QPalette::Text);
}

bool CurveModel::setShape(int, const std::vector<int>&, int) {
    return false;
}

bool CurveModel::setSlopes(int, int, double, double, bool) {
    return false;
}

} // namespace Kestrel::UI
