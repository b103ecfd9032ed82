#include <KxUI/scopes/SolidCloud_p.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kestrel::UI {
namespace {

constexpr float LeastRadius = 1.2F; // of a single pixel that is to be seen
constexpr float HiddenRadius = 0.4F;
constexpr float RadiusOfTenfold = 0.9F;
constexpr float MostRadius = 5;
constexpr float RingWidth = 1.2F;
constexpr float RingDepth = 2e-3F; // what is inside a ring is nearer than it
constexpr int LeastLight = 70;     // of the largest component

std::uint32_t shownCount(const SolidCell& cell) {
    return cell.count > 0 ? cell.count : cell.outside;
}

std::uint32_t mostOf(const std::vector<SolidCell>& cells) {
    std::uint32_t most = 1;
    for (const SolidCell& cell : cells)
        most = std::max(most, shownCount(cell));
    return most;
}

CloudPoint disc(const QVector3D& place, float radius, QRgb color) {
    return {place.x(), place.y(), place.z(), radius, color};
}

} // namespace

std::vector<SolidCell> SolidCloud::cells(const ScopeSolid& solid, const SolidShape& shape,
                                         const std::array<float, 3>& luma,
                                         const SolidRules& rules) {
    std::vector<SolidCell> all;
    for (int blue = 0; blue < solid.cells; ++blue) {
        for (int green = 0; green < solid.cells; ++green) {
            for (int red = 0; red < solid.cells; ++red) {
                const std::size_t index = solid.index(red, green, blue);
                const std::uint32_t count = solid.counts[index];
                const std::uint32_t outside = solid.outsideCounts[index];
                if ((count == 0 && outside == 0) || std::max(count, outside) < rules.least)
                    continue;
                const SolidShape::Color rgb{float(solid.range.center(red)),
                                            float(solid.range.center(green)),
                                            float(solid.range.center(blue))};
                const float light = luma[0] * rgb[0] + luma[1] * rgb[1] + luma[2] * rgb[2];
                if (rules.hasSlab && !(light >= rules.lower && light <= rules.upper))
                    continue;
                all.push_back({std::uint32_t(index), rgb, shape.place(rgb),
                               count >= rules.least ? count : 0,
                               outside >= rules.least ? outside : 0, 0});
            }
        }
    }
    const std::uint32_t most = mostOf(all);
    for (SolidCell& cell : all)
        cell.radius = radius(shownCount(cell), most, rules);
    return all;
}

float SolidCloud::radius(std::uint32_t count, std::uint32_t most, const SolidRules& rules) {
    const double gain = std::exp2(rules.brightness);
    const float least = rules.singlePixels ? LeastRadius : HiddenRadius;
    float size = 0;
    if (rules.logarithmic)
        size = least + RadiusOfTenfold * float(std::log10(std::max(double(count) * gain, 1.0)));
    else
        size = MostRadius * float(std::sqrt(double(count) * gain / double(std::max(most, 1U))));
    size = std::clamp(size, rules.singlePixels ? LeastRadius : 0.0F, MostRadius);
    // Less than that covers no middle of a pixel, and would be drawn as one all the same.
    return size < 0.5F ? 0 : std::max(size * float(rules.scale), std::min(size, LeastRadius));
}

QRgb SolidCloud::color(const SolidShape::Color& rgb) {
    std::array<int, 3> codes{};
    for (std::size_t i = 0; i < 3; ++i)
        codes[i] = int(std::lround(std::clamp(rgb[i], 0.0F, 1.0F) * 255));
    const int lift = std::max(LeastLight - *std::max_element(codes.begin(), codes.end()), 0);
    return qRgb(codes[0] + lift, codes[1] + lift, codes[2] + lift);
}

std::vector<CloudPoint> SolidCloud::points(const std::vector<SolidCell>& cells,
                                           const SolidProjection& projection, const QColor& warning,
                                           const QColor& ground) {
    std::vector<CloudPoint> all;
    all.reserve(cells.size());
    for (const SolidCell& cell : cells) {
        const float size = cell.radius;
        if (size <= 0)
            continue;
        const QRgb inside = cell.count > 0 ? color(cell.rgb) : ground.rgb();
        if (cell.outside == 0) {
            all.push_back(disc(cell.place, size, inside));
            continue;
        }
        // The eye sees the inner disc before the outer one.
        all.push_back(disc(cell.place, size + RingWidth, warning.rgb()));
        all.push_back(
            disc(cell.place + projection.towardsEye(cell.place) * RingDepth, size, inside));
    }
    return all;
}

SolidPlaces::SolidPlaces(const std::vector<SolidCell>& cells, const SolidProjection& projection) {
    m_discs.reserve(cells.size());
    for (const SolidCell& cell : cells) {
        const QPointF at = projection.toWidget(cell.place);
        m_discs.push_back(
            {float(at.x()), float(at.y()), float(projection.depth(cell.place)), cell.radius});
    }
}

int SolidPlaces::cellAt(const QPointF& position, double slack) const {
    int nearest = -1;
    double least = slack;
    double depth = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < m_discs.size(); ++i) {
        const Disc& disc = m_discs[i];
        if (disc.radius <= 0)
            continue;
        const double distance =
            std::max(std::hypot(double(disc.x) - position.x(), double(disc.y) - position.y()) -
                         double(disc.radius),
                     0.0);
        if (distance < least || (distance == least && double(disc.depth) < depth)) {
            nearest = int(i);
            least = distance;
            depth = double(disc.depth);
        }
    }
    return nearest;
}

std::vector<int> SolidPlaces::cellsIn(const QPolygonF& polygon) const {
    std::vector<int> all;
    const QRectF bounds = polygon.boundingRect();
    for (std::size_t i = 0; i < m_discs.size(); ++i) {
        const QPointF at = place(int(i));
        if (m_discs[i].radius > 0 && bounds.contains(at) &&
            polygon.containsPoint(at, Qt::OddEvenFill))
            all.push_back(int(i));
    }
    return all;
}

QPointF SolidPlaces::place(int cell) const {
    const Disc& disc = m_discs[std::size_t(cell)];
    return {double(disc.x), double(disc.y)};
}

} // namespace Kestrel::UI
