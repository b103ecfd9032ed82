#include <KxUI/scopes/SolidShape_p.h>

#include <KxUI/color/ColorConversions.h>
#include <KxUI/scopes/Transfer_p.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

using Color = SolidShape::Color;
using Matrix = std::array<std::array<double, 3>, 3>;

constexpr int Pieces = 16;    // of a line, which is bent in some spaces
constexpr float Step = 1e-3F; // for slopes of the surface

// Light of BT.709's primaries as light of BT.2020's and back, both with a white of D65 (ITU-R BT.2087).
constexpr Matrix Rec2020Of709{{{0.627404, 0.329283, 0.043313},
                               {0.069097, 0.919540, 0.011362},
                               {0.016391, 0.088013, 0.895595}}};
constexpr Matrix Rec709Of2020{{{1.660491, -0.587641, -0.072850},
                               {-0.124551, 1.132900, -0.008349},
                               {-0.018151, -0.100579, 1.118730}}};

// A straight line in the cube. It lies on the faces where one of the other components ends.
struct Line {
    int from; // corners: 1 for red, 2 for green, 4 for blue
    int to;
};

constexpr std::array<Line, 12> Edges{{{0, 1},
                                      {0, 2},
                                      {0, 4},
                                      {1, 3},
                                      {1, 5},
                                      {2, 3},
                                      {2, 6},
                                      {4, 5},
                                      {4, 6},
                                      {3, 7},
                                      {5, 7},
                                      {6, 7}}};
// Around the cone, and from its tip to the six colours of the ring.
constexpr std::array<Line, 12> Cone{{{1, 3},
                                     {3, 2},
                                     {2, 6},
                                     {6, 4},
                                     {4, 5},
                                     {5, 1},
                                     {0, 1},
                                     {0, 3},
                                     {0, 2},
                                     {0, 6},
                                     {0, 4},
                                     {0, 5}}};

Color cornerColor(int corner) {
    return {float(corner & 1), float(corner >> 1 & 1), float(corner >> 2 & 1)};
}

Color between(const Color& a, const Color& b, float t) {
    return {a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t, a[2] + (b[2] - a[2]) * t};
}

// A neighbour inside the cube along one component.
Color beside(Color rgb, std::size_t component) {
    rgb[component] += rgb[component] > 0.5F ? -Step : Step;
    return rgb;
}

} // namespace

QVector3D SolidShape::place(const Color& rgb) const {
    switch (m_space) {
    case ColorSpaceScope::YCbCrSolid: {
        const RgbToYCbCrMatrix& matrix = m_encoding.matrix;
        const auto dot = [&rgb](const std::array<float, 3>& row) {
            return row[0] * rgb[0] + row[1] * rgb[1] + row[2] * rgb[2];
        };
        return {dot(matrix.cb), dot(matrix.luma) - 0.5F, dot(matrix.cr)};
    }
    case ColorSpaceScope::HsvCone: {
        const float value = *std::max_element(rgb.begin(), rgb.end());
        const float spread = value - *std::min_element(rgb.begin(), rgb.end());
        float hue = 0;
        float saturation = 0;
        float same = 0;
        rgbToHsv(rgb[0], rgb[1], rgb[2], hue, saturation, same);
        // Saturation times value is the spread; brighter than white, the cone goes on as a cylinder.
        const float radius = (value > 1 ? spread / value : spread) / 2;
        const float angle = hue * 2 * float(M_PI);
        return {radius * std::cos(angle), value - 0.5F, -radius * std::sin(angle)};
    }
    case ColorSpaceScope::RgbCube:
        break;
    }
    return {rgb[0] - 0.5F, rgb[1] - 0.5F, rgb[2] - 0.5F};
}

std::vector<SolidSegment> SolidShape::lines(const Mapping& mapping) const {
    std::vector<SolidSegment> all;
    const QVector3D middle = mapping({0.5F, 0.5F, 0.5F});
    const auto addPiece = [&](const Color& from, const Color& to) {
        SolidSegment segment{mapping(from), mapping(to), {}};
        const Color here = between(from, to, 0.5F);
        const QVector3D place = mapping(here);
        const QVector3D along = segment.to - segment.from;
        std::size_t faces = 0;
        for (std::size_t axis = 0; axis < 3 && faces < 2; ++axis) {
            if (from[axis] != to[axis] || (here[axis] != 0 && here[axis] != 1))
                continue;
            // Along the face that ends this component, away from the line.
            const std::size_t other =
                from[(axis + 1) % 3] == to[(axis + 1) % 3] ? (axis + 1) % 3 : (axis + 2) % 3;
            QVector3D outward =
                QVector3D::crossProduct(along, mapping(beside(here, other)) - place);
            if (QVector3D::dotProduct(outward, middle - place) > 0)
                outward = -outward;
            segment.outward[faces++] = outward.normalized();
        }
        if (faces < 2)
            segment.outward[1] = segment.outward[0];
        all.push_back(segment);
    };
    for (const Line& line : m_space == ColorSpaceScope::HsvCone ? Cone : Edges) {
        const Color from = cornerColor(line.from);
        const Color to = cornerColor(line.to);
        for (int i = 0; i < Pieces; ++i)
            addPiece(between(from, to, float(i) / Pieces),
                     between(from, to, float(i + 1) / Pieces));
    }
    return all;
}

std::vector<SolidSegment> SolidShape::wires() const {
    return lines([this](const Color& rgb) { return place(rgb); });
}

std::vector<SolidSegment> SolidShape::wires(ColorSpaceScope::GamutWire primaries) const {
    return lines([this, primaries](const Color& rgb) { return place(converted(primaries, rgb)); });
}

std::vector<SolidCorner> SolidShape::corners() const {
    std::vector<SolidCorner> all;
    const std::vector<SolidSegment> edges = wires();
    const QVector3D middle = place({0.5F, 0.5F, 0.5F});
    for (int corner = 0; corner < 8; ++corner) {
        SolidCorner each{place(cornerColor(corner)), {}, corner, {}};
        each.label = (each.place - middle).normalized();
        for (const SolidSegment& edge : edges) {
            if ((edge.from - each.place).length() < Step || (edge.to - each.place).length() < Step)
                each.outward.insert(each.outward.end(), edge.outward.begin(), edge.outward.end());
        }
        // White is in the middle of the cone's lid, where no line ends.
        if (each.outward.empty())
            each.outward.push_back(each.label);
        all.push_back(std::move(each));
    }
    return all;
}

SolidShape::Color SolidShape::converted(ColorSpaceScope::GamutWire primaries,
                                        const Color& rgb) const {
    if (primaries == ColorSpaceScope::LegalWire)
        return rgb;
    const Matrix& matrix = primaries == ColorSpaceScope::Rec2020Wire ? Rec709Of2020 : Rec2020Of709;
    std::array<double, 3> light{};
    for (std::size_t i = 0; i < 3; ++i)
        light[i] = nitsOfSignal(m_encoding, double(rgb[i]));
    Color result{};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] =
            float(signalOfNits(m_encoding, matrix[i][0] * light[0] + matrix[i][1] * light[1] +
                                               matrix[i][2] * light[2]));
    return result;
}

} // namespace Kestrel::UI
