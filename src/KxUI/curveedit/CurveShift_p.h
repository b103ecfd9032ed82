#pragma once

#include <KxUI/curveedit/CurveModel.h>

#include <QChar>

#include <vector>

namespace Kestrel::UI {

/** A knot of a model. */
struct CurvePlace {
    int curve = 0;
    int knot = 0;
};

/** How numbers that are typed, stepped or dragged move knots of a model. */
namespace CurveShift {

enum Axis { X, Y };

/** The moves that bring one knot to `value` in x or y, as near as its neighbours and limits let
    it. */
std::vector<CurveModel::Move> moveTo(const CurveModel& model, const CurvePlace& place, Axis axis,
                                     double value);

/** The moves that shift knots together by `by`, as far as the one among them lets it that is stopped
    first. The places of a curve follow each other and rise. */
std::vector<CurveModel::Move> moveBy(const CurveModel& model, const std::vector<CurvePlace>& places,
                                     Axis axis, double by);

/** The moves that change each number by itself: '*' and '/', and '=' for y, as near as limits let
    it; '+' and '-' as moveBy(). None for another operation, and where a knot would pass its
    neighbour. */
std::vector<CurveModel::Move> moveEach(const CurveModel& model,
                                       const std::vector<CurvePlace>& places, Axis axis,
                                       QChar operation, double operand);

} // namespace CurveShift

} // namespace Kestrel::UI
