#include <KxUI/scopes/VectorPlane_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double Degrees = 180 / 3.14159265358979323846;
constexpr double LogBase = 30;
constexpr int Cells = 512;
constexpr int FineCells = 1024;
constexpr double MostZoom = 64;

// Of the boxes around targets.
constexpr double SmallHalf = 0.025;
constexpr double LargeAmplitude = 0.2;
constexpr double LargeAngle = 10;
constexpr int ArcSteps = 8;

double stretched(double radius) {
    const double reach = VectorPlane::Reach;
    return reach * std::log1p((LogBase - 1) * radius / reach) / std::log(LogBase);
}

double unstretched(double radius) {
    const double reach = VectorPlane::Reach;
    return reach * std::expm1(radius / reach * std::log(LogBase)) / (LogBase - 1);
}

bool isSame(const RgbToYCbCrMatrix& a, const RgbToYCbCrMatrix& b) {
    return a.luma == b.luma && a.cb == b.cb && a.cr == b.cr;
}

} // namespace

QPointF VectorPlane::toUv(const QPointF& chroma) const {
    QPointF at = chroma;
    const double radius = std::hypot(at.x(), at.y());
    if (isLogarithmic && radius > 0)
        at *= stretched(radius) / radius;
    return {0.5 + at.x() / (2 * Reach), 0.5 + at.y() / (2 * Reach)};
}

QPointF VectorPlane::fromUv(const QPointF& uv) const {
    const QPointF at = (uv - QPointF(0.5, 0.5)) * (2 * Reach);
    const double radius = std::hypot(at.x(), at.y());
    return isLogarithmic && radius > 0 ? at * (unstretched(radius) / radius) : at;
}

ValueRange vectorRangeFor(const QRectF& seen, int gain, bool isLogarithmic,
                          const SourceCodes& codes) {
    const double reach = VectorPlane::Reach;
    double zoom = 1;
    if (!isLogarithmic) {
        // The smallest square around the middle that holds what is seen.
        const double furthest = std::max({0.5 - seen.left(), seen.right() - 0.5, 0.5 - seen.top(),
                                          seen.bottom() - 0.5, 0.5 / MostZoom}) /
                                gain;
        zoom = std::exp2(std::floor(std::log2(0.5 / furthest) + 1e-9));
        zoom = std::clamp(zoom, 1.0, MostZoom);
    }
    if (codes.isYCbCr && codes.bits > 0) {
        const int each = std::max((1 << codes.bits) / (zoom > 1 ? FineCells : Cells), 1);
        return ValueRange::ofChromaCodes(codes.bits, false, each);
    }
    // Between two powers of two the cells are larger than pixels soon.
    const bool isExact = seen.width() * zoom / gain > 0.9 && !isLogarithmic;
    return {float(-reach / zoom), float(reach / zoom), isExact ? Cells : FineCells};
}

QPolygonF smallBox(const VectorTarget& target, double reach) {
    const QPointF middle(double(target.cb), double(target.cr));
    const QPointF along = unitVector(directionOf(middle)) * (SmallHalf * reach);
    const QPointF across(-along.y(), along.x());
    QPolygonF box;
    box << middle - along - across << middle + along - across << middle + along + across
        << middle - along + across << middle - along - across;
    return box;
}

QPolygonF largeBox(const VectorTarget& target) {
    const QPointF middle(double(target.cb), double(target.cr));
    const double length = std::hypot(middle.x(), middle.y());
    const double direction = directionOf(middle);
    QPolygonF box;
    for (const double side : {1.0, -1.0}) {
        for (int i = -ArcSteps; i <= ArcSteps; ++i)
            box << unitVector(direction + side * i * LargeAngle / ArcSteps) *
                       (length * (1 + side * LargeAmplitude));
    }
    box << box.first();
    return box;
}

QPolygonF vectorCircle(double radius) {
    QPolygonF circle;
    for (int degrees = 0; degrees <= 360; degrees += 3)
        circle << unitVector(degrees) * radius;
    return circle;
}

QPolygonF vectorHull(const RgbToYCbCrMatrix& matrix) {
    QPolygonF hull;
    for (const VectorTarget& target : vectorTargets(matrix, 1))
        hull << QPointF(double(target.cb), double(target.cr));
    hull << hull.first();
    return hull;
}

double hullReach(const RgbToYCbCrMatrix& matrix, double degrees) {
    const QPolygonF hull = vectorHull(matrix);
    const QPointF ray = unitVector(degrees);
    const auto cross = [](const QPointF& a, const QPointF& b) {
        return a.x() * b.y() - a.y() * b.x();
    };
    double furthest = 0;
    for (int i = 0; i + 1 < int(hull.size()); ++i) {
        const QPointF edge = hull[i + 1] - hull[i];
        const double turn = cross(ray, edge);
        if (turn == 0)
            continue;
        const double distance = cross(hull[i], edge) / turn;
        const double part = cross(hull[i], ray) / turn;
        if (part >= -1e-9 && part <= 1 + 1e-9)
            furthest = std::max(furthest, distance);
    }
    return furthest;
}

QPointF unitVector(double degrees) {
    return {std::cos(degrees / Degrees), std::sin(degrees / Degrees)};
}

double directionOf(const QPointF& chroma) {
    const double degrees = std::atan2(chroma.y(), chroma.x()) * Degrees;
    return degrees < 0 ? std::fmod(degrees + 360, 360) : degrees;
}

RgbToYCbCrMatrix rec2020Matrix() {
    return rgbToYCbCrMatrix(0.2627, 0.0593);
}

QString matrixName(const RgbToYCbCrMatrix& matrix) {
    for (int i = 0; i < ColorSpace::Count; ++i) {
        if (isSame(matrix, colorSpaceRgbToYCbCr(i)))
            return QString::fromUtf8(colorSpaceName(i));
    }
    if (isSame(matrix, rec2020Matrix()))
        return QStringLiteral("Rec 2020");
    return QStringLiteral("R %1 B %2")
        .arg(double(matrix.luma[0]), 0, 'g', 4)
        .arg(double(matrix.luma[2]), 0, 'g', 4);
}

} // namespace Kestrel::UI
