#include <KxUI/scopes/Vectorscope_p.h>

#include <KxUI/draw/ToneTable_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/scopes/CountWindow_p.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double NameDistance = 13; // of a target's name from the target
constexpr double TickLength = 5;
constexpr float ReferenceDim = 0.45F;
constexpr double MarkRadius = 5; // of the viewer's pixel
constexpr double TintLuma = 0.6; // of the colours of hues

const QColor SkinColor(255, 186, 130);

double cellSize(const ScopeVectors& vectors) {
    return (double(vectors.range.upper) - double(vectors.range.lower)) / vectors.size;
}

// Where Cb or Cr lies among the cells of its axis.
double cellOf(const ScopeVectors& vectors, double chroma) {
    return (chroma - double(vectors.range.lower)) / cellSize(vectors);
}

QPolygonF lineOf(const QPointF& from, const QPointF& to) {
    QPolygonF line;
    line << from << to;
    return line;
}

// A colour of this hue and strength, as bright as it can be.
std::array<double, 3> hueAt(const QPointF& chroma, const RgbToYCbCrMatrix& matrix) {
    const auto kr = double(matrix.luma[0]);
    const auto kb = double(matrix.luma[2]);
    const double red = TintLuma + 2 * (1 - kr) * chroma.y();
    const double blue = TintLuma + 2 * (1 - kb) * chroma.x();
    const double green = (TintLuma - kr * red - kb * blue) / (1 - kr - kb);
    const double most = std::max({red, green, blue, 1e-6});
    const auto part = [most](double value) { return std::clamp(value / most, 0.0, 1.0); };
    return {part(red), part(green), part(blue)};
}

// The counts of all cells to the left of and below each corner.
std::vector<double> sumsBelow(const ScopeVectors& vectors) {
    const auto size = std::size_t(vectors.size);
    std::vector<double> sums((size + 1) * (size + 1));
    for (std::size_t y = 0; y < size; ++y) {
        double row = 0;
        for (std::size_t x = 0; x < size; ++x) {
            row += double(vectors.counts[y * size + x]);
            sums[(y + 1) * (size + 1) + x + 1] = sums[y * (size + 1) + x + 1] + row;
        }
    }
    return sums;
}

} // namespace

double VectorscopePrivate::expected(const ScopeVectors& vectors) const {
    const double share = cellSize(vectors) * gain / (2 * VectorPlane::Reach);
    return double(vectors.pixels) * share * share;
}

IntensityGrid VectorscopePrivate::lightOf(const ScopeVectors& vectors,
                                          const ScopeGeometry& geometry) const {
    if (vectors.size == 0)
        return {};
    if (logRadius)
        return logLightOf(vectors, geometry);
    const QPointF corner = signalAt(geometry.fromWidget(geometry.plot.topLeft()));
    const QPointF opposite = signalAt(geometry.fromWidget(geometry.plot.bottomRight()));
    CountAxis across;
    across.cells = vectors.size;
    across.begin = cellOf(vectors, corner.x());
    across.end = cellOf(vectors, opposite.x());
    across.pixels = int(std::lround(geometry.plot.width() * geometry.ratio));
    CountAxis down;
    down.step = -vectors.size;
    down.cells = vectors.size;
    down.begin = vectors.size - cellOf(vectors, corner.y());
    down.end = vectors.size - cellOf(vectors, opposite.y());
    down.pixels = int(std::lround(geometry.plot.height() * geometry.ratio));
    const std::uint32_t* const top =
        vectors.counts.data() + std::size_t(vectors.size) * std::size_t(vectors.size - 1);
    return densitiesOf(top, across, down, expected(vectors));
}

// A pixel shows the mean of the cells that it touches, so that none falls between two.
IntensityGrid VectorscopePrivate::logLightOf(const ScopeVectors& vectors,
                                             const ScopeGeometry& geometry) const {
    const int width = int(std::lround(geometry.plot.width() * geometry.ratio));
    const int height = int(std::lround(geometry.plot.height() * geometry.ratio));
    const int size = vectors.size;
    const std::vector<double> sums = sumsBelow(vectors);
    const double pixelShare = viewport.width * viewport.height / (double(width) * height);
    const auto corner = [&](int x, int y) {
        const QPointF at = geometry.plot.topLeft() + QPointF(x, y) / geometry.ratio;
        const QPointF chroma = signalAt(geometry.fromWidget(at));
        return QPointF(cellOf(vectors, chroma.x()), cellOf(vectors, chroma.y()));
    };
    const auto sumTo = [&](int x, int y) {
        return sums[std::size_t(y) * std::size_t(size + 1) + std::size_t(x)];
    };
    std::vector<float> light(std::size_t(width) * std::size_t(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const QRectF box = QRectF(corner(x, y), corner(x + 1, y + 1)).normalized();
            const int left = std::clamp(int(std::floor(box.left())), 0, size);
            const int right = std::clamp(int(std::ceil(box.right())), 0, size);
            const int low = std::clamp(int(std::floor(box.top())), 0, size);
            const int high = std::clamp(int(std::ceil(box.bottom())), 0, size);
            const int cells = (right - left) * (high - low);
            if (cells <= 0)
                continue;
            const double sum =
                sumTo(right, high) - sumTo(left, high) - sumTo(right, low) + sumTo(left, low);
            const double mean = sum / cells * box.width() * box.height();
            const double even = double(vectors.pixels) * pixelShare;
            light[std::size_t(y) * std::size_t(width) + std::size_t(x)] =
                float(mean / std::max(even, 1e-30));
        }
    }
    return IntensityGrid(width, height, std::move(light));
}

QImage VectorscopePrivate::tinted(const PlacedLight& lit, const ScopeGeometry& geometry) const {
    QImage image = Kestrel::UI::lightOf(lit.light, toneCurve(), QColor(Qt::white));
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int shown = qRed(row[x]);
            const QPointF at = lit.target.topLeft() + QPointF(x + 0.5, y + 0.5) / geometry.ratio;
            if (shown == 0) {
                row[x] = 0;
                continue;
            }
            const auto hue = hueAt(plane().fromUv(geometry.fromWidget(at)), encoding().matrix);
            const auto part = [shown](double value) { return int(std::lround(shown * value)); };
            row[x] = qRgba(part(hue[0]), part(hue[1]), part(hue[2]), shown);
        }
    }
    return image;
}

// Kept while only the brightness changes.
void VectorscopePrivate::makeTraces(const ScopeGeometry& geometry) {
    const auto counted = result();
    const auto held = shownReference();
    const TraceKey key(geometry, held.get());
    if (!(m_key == key)) {
        const auto lit = [&](const ScopeVectors& vectors) {
            return withoutDark(geometry.plot, lightOf(vectors, geometry), geometry.ratio);
        };
        m_reference = held && held != counted ? lit(held->vectors) : PlacedLight();
        m_light = lit(counted->vectors);
        m_key = key;
    }
}

void VectorscopePrivate::paintTrace(DrawingContext& context, const ScopeGeometry& geometry) {
    makeTraces(geometry);
    context.setClip(geometry.plot);
    paintPlane(context, geometry);
    QColor dim = colors.limit;
    dim.setAlphaF(ReferenceDim);
    context.intensity(m_reference.target, m_reference.light, toneCurve(), dim);
    if (coloring == Vectorscope::Hue && !m_light.light.isEmpty())
        context.image(m_light.target, tinted(m_light, geometry));
    else
        context.intensity(m_light.target, m_light.light, toneCurve(),
                          coloring == Vectorscope::White ? QColor(225, 225, 225)
                                                         : QColor(70, 255, 120));
    context.setClip(QRectF());
    paintOutside(context, geometry);
    paintSettings(context, geometry);
}

// ---- Lines, labels and marks.

void VectorscopePrivate::paintOutline(DrawingContext& context, const ScopeGeometry& geometry,
                                      const QPolygonF& chroma, const LineStroke& stroke) const {
    std::vector<QPointF> points;
    points.reserve(std::size_t(chroma.size()));
    for (const QPointF& each : chroma)
        points.push_back(geometry.toWidget(plane().toUv(each)));
    context.polyline(points.data(), int(points.size()), stroke);
}

void VectorscopePrivate::paintDirection(DrawingContext& context, const ScopeGeometry& geometry,
                                        double degrees, bool through, const LineStroke& stroke,
                                        const QString& label) const {
    const double reach = double(vectorReach(encoding().matrix));
    const QPointF end = unitVector(degrees) * reach;
    paintOutline(context, geometry, lineOf(through ? -end : QPointF(), end), stroke);
    const QPointF at = geometry.toWidget(plane().toUv(end * 1.03));
    const QRectF room(at - QPointF(NameDistance, NameDistance),
                      QSizeF(2 * NameDistance, 2 * NameDistance));
    context.text(room, Qt::AlignCenter, label, labelFont(), stroke.color);
}

void VectorscopePrivate::paintPlane(DrawingContext& context, const ScopeGeometry& geometry) const {
    const RgbToYCbCrMatrix& matrix = encoding().matrix;
    const double reach = double(vectorReach(matrix));
    for (const double part : {0.25, 0.5, 0.75, 1.0})
        paintOutline(context, geometry, vectorCircle(reach * part), LineStroke(colors.line));
    const double edge = VectorPlane::Reach;
    paintOutline(context, geometry, lineOf({-edge, 0}, {edge, 0}), LineStroke(colors.line));
    paintOutline(context, geometry, lineOf({0, -edge}, {0, edge}), LineStroke(colors.line));
    if (gamutHull) {
        // In short pieces, which the logarithm of distances bends.
        const QPolygonF hull = vectorHull(matrix);
        QPolygonF bent;
        for (int i = 0; i + 1 < int(hull.size()); ++i)
            for (int k = 0; k <= 16; ++k)
                bent << hull[i] + (hull[i + 1] - hull[i]) * k / 16;
        paintOutline(context, geometry, bent, LineStroke(colors.strongLine));
    }
    if (iqLines) {
        const VectorAxes axes = vectorAxes(matrix);
        const LineStroke stroke(QColor(170, 170, 255, 170), 1, Qt::DashLine);
        paintDirection(context, geometry, axes.i, true, stroke, QStringLiteral("I"));
        paintDirection(context, geometry, axes.q, true, stroke, QStringLiteral("Q"));
    }
    if (skinToneLine)
        paintDirection(context, geometry, skinToneAngle, false, LineStroke(SkinColor, 1.25),
                       QString());
    paintTargets(context, geometry);
}

void VectorscopePrivate::paintTargets(DrawingContext& context,
                                      const ScopeGeometry& geometry) const {
    const RgbToYCbCrMatrix& matrix = encoding().matrix;
    const double reach = double(vectorReach(matrix));
    const QPointF middle = geometry.toWidget(plane().toUv({}));
    for (const auto flag : {Vectorscope::Targets75, Vectorscope::Targets100}) {
        if (!(targets & flag))
            continue;
        const bool isFull = flag == Vectorscope::Targets100;
        const bool isNamed = !isFull || !(targets & Vectorscope::Targets75);
        for (const VectorTarget& target : vectorTargets(matrix, isFull ? 1.0F : 0.75F)) {
            const QPointF chroma(double(target.cb), double(target.cr));
            const auto hue = hueAt(chroma, matrix);
            const auto soft = [](double part) { return ColorPart(0.35 + 0.65 * part); };
            QColor color = QColor::fromRgbF(soft(hue[0]), soft(hue[1]), soft(hue[2]));
            paintOutline(context, geometry, smallBox(target, reach), LineStroke(color));
            QColor faint = color;
            faint.setAlpha(110);
            if (boxes == Vectorscope::LargeBoxes)
                paintOutline(context, geometry, largeBox(target), LineStroke(faint));
            if (!isNamed)
                continue;
            // Beside the target, off the way from the middle to it, where its trace comes along.
            const QPointF at = geometry.toWidget(plane().toUv(chroma));
            const QPointF way = at - middle;
            const double length = std::max(std::hypot(way.x(), way.y()), 1.0);
            const QPointF aside = QPointF(-way.y(), way.x()) / length * NameDistance;
            const QPointF center = at + aside * 1.2;
            context.text(QRectF(center - QPointF(20, 20), QSizeF(40, 40)), Qt::AlignCenter,
                         QString::fromLatin1(target.name), labelFont(), color);
        }
    }
}

// Pixels outside of the plane, at the directions that they lie in. Of a zoomed plane some are only not
// seen, and these are no matter.
void VectorscopePrivate::paintOutside(DrawingContext& context,
                                      const ScopeGeometry& geometry) const {
    const auto counted = result();
    const ScopeVectors& vectors = counted->vectors;
    const bool isWhole = double(vectors.range.upper) >= 0.999 * VectorPlane::Reach &&
                         viewport.isWhole() && gain == 1;
    if (vectors.outside == 0 || !isWhole)
        return;
    const QPointF middle = geometry.plot.center();
    const double half = geometry.plot.width() / 2;
    for (std::size_t degree = 0; degree < vectors.outsideByDegree.size(); ++degree) {
        const std::uint32_t count = vectors.outsideByDegree[degree];
        if (count == 0)
            continue;
        const QPointF up = unitVector(double(degree) + 0.5);
        const QPointF way(up.x(), -up.y());
        const QPointF rim =
            middle + way * (half / std::max(std::fabs(way.x()), std::fabs(way.y())));
        QColor color = colors.warning;
        const double share = std::log1p(double(count)) / std::log1p(double(vectors.outside));
        color.setAlphaF(ColorPart(0.4 + 0.6 * share));
        context.line(rim, rim + way * TickLength, LineStroke(color, 2));
    }
}

// What the plane is, without which nobody could compare it with another one.
void VectorscopePrivate::paintSettings(DrawingContext& context,
                                       const ScopeGeometry& geometry) const {
    QStringList texts{matrixName(encoding().matrix)};
    if (gain > 1)
        texts.append(Vectorscope::tr("Gain %1").arg(gain));
    if (logRadius)
        texts.append(Vectorscope::tr("Logarithmic"));
    if (std::isfinite(lumaLower) || std::isfinite(lumaUpper))
        texts.append(
            Vectorscope::tr("Luma %1 to %2").arg(valueText(lumaLower), valueText(lumaUpper)));
    // In the corner of the whole, which a wide scope leaves free.
    const QRectF area = geometry.bounds.adjusted(10, 8, -10, -8);
    context.text(area, Qt::AlignLeft | Qt::AlignBottom, texts.join(QStringLiteral("   ")),
                 labelFont(), colors.text);
}

void VectorscopePrivate::paintMarks(DrawingContext& context, const ScopeGeometry& geometry) {
    const auto sample = model ? model->sample() : std::nullopt;
    if (!sample || !std::isfinite(sample->cb) || !std::isfinite(sample->cr))
        return;
    const QPointF uv = uvOfSignal({double(sample->cb), double(sample->cr)});
    const QPointF at =
        geometry.toWidget({std::clamp(uv.x(), 0.0, 1.0), std::clamp(uv.y(), 0.0, 1.0)});
    const QPointF across(MarkRadius, 0);
    const QPointF up(0, MarkRadius);
    for (const LineStroke& stroke :
         {LineStroke(QColor(0, 0, 0, 200), 4), LineStroke(QColor(Qt::white), 1.5)}) {
        context.line(at - across, at + across, stroke);
        context.line(at - up, at + up, stroke);
    }
}

void VectorscopePrivate::paintSelection(DrawingContext& context, const ScopeGeometry& geometry) {
    if (!model || model->selection().kind != ScopeSelection::Kind::Chroma)
        return;
    std::vector<QPointF> points;
    for (const ScopeSelection::Point& each : model->selection().polygon)
        points.push_back(geometry.toWidget(uvOfSignal({double(each.cb), double(each.cr)})));
    if (points.empty())
        return;
    context.polygon(points.data(), int(points.size()), colors.selection);
    points.push_back(points.front());
    context.polyline(points.data(), int(points.size()), LineStroke(colors.cursor));
}

} // namespace Kestrel::UI
