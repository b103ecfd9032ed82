#pragma once

#include <KxUI/scopes/ScopeVectors.h>
#include <KxUI/scopes/VectorTargets.h>
#include <KxUI/scopes/WaveformLayout_p.h>

#include <QPointF>
#include <QPolygonF>
#include <QString>

namespace Kestrel::UI {

/** Where chroma lies in a vectorscope: Cb rightwards, Cr upwards, both from -Reach to Reach over the
    whole of 0 to 1. */
struct VectorPlane {
    /** All targets of all matrices lie inside. */
    static constexpr double Reach = 0.6;

    /** Radii by their logarithm: rho' = r log(1 + 29 rho / r) / log 30, with r the reach. */
    bool isLogarithmic = false;

    /** x is Cb, y is Cr. */
    QPointF toUv(const QPointF& chroma) const;
    QPointF fromUv(const QPointF& uv) const;
};

/** What to count for a part of the plane that is seen (0 to 1 each way) while the signal is shown `gain`
    times as large: the codes of the source where it stores chroma, else cells as fine as the zoom
    about the middle asks for. */
ValueRange vectorRangeFor(const QRectF& seen, int gain, bool isLogarithmic,
                          const SourceCodes& codes);

/** Lines around a target, closed: of 2.5 % of `reach` to each side; or of a fifth of its length and 10
    degrees, with ends along circles. */
QPolygonF smallBox(const VectorTarget& target, double reach);
QPolygonF largeBox(const VectorTarget& target);
/** A circle around the middle, closed. */
QPolygonF vectorCircle(double radius);
/** The six colours of full strength, closed: no other colour with components of 0 to 1 lies outside. */
QPolygonF vectorHull(const RgbToYCbCrMatrix& matrix);
/** How far that hull reaches in a direction, in degrees counter-clockwise from +Cb. */
double hullReach(const RgbToYCbCrMatrix& matrix, double degrees);

/** A direction as a point at a distance of 1. */
QPointF unitVector(double degrees);
/** The direction of a point, 0 up to but without 360. */
double directionOf(const QPointF& chroma);

/** ITU-R BT.2020, which is no option of colour spaces. */
RgbToYCbCrMatrix rec2020Matrix();
/** "Rec 709", or the weights of red and blue where the matrix has no name. */
QString matrixName(const RgbToYCbCrMatrix& matrix);

} // namespace Kestrel::UI
