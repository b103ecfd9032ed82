#pragma once

#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/ScopeEncoding.h>

#include <QVector3D>

#include <array>
#include <functional>
#include <vector>

namespace Kestrel::UI {

/** A piece of a solid's surface line. Faces that meet there tell whether it is before or behind what
    the solid contains. */
struct SolidSegment {
    QVector3D from;
    QVector3D to;
    std::array<QVector3D, 2> outward; ///< of the faces; the same twice where there is one
};

/** A corner of a solid, with the faces that meet there. */
struct SolidCorner {
    QVector3D place;
    QVector3D label; ///< away from the solid, of length 1
    int color = 0;   ///< 1 for red, 2 for green, 4 for blue
    std::vector<QVector3D> outward;
};

/** Where colours lie in space: y upwards, colours of 0 to 1 within 0.5 of the middle. */
class SolidShape {
public:
    using Color = std::array<float, 3>;

    SolidShape(ColorSpaceScope::Space space, const ScopeEncoding& encoding)
        : m_space(space)
        , m_encoding(encoding) {}

    /** Where red, green and blue of a signal lie. */
    QVector3D place(const Color& rgb) const;

    /** The lines along which a signal of 0 to 1 ends: twelve edges, or the ring and the six rays of the
        cone. */
    std::vector<SolidSegment> wires() const;
    /** The same of a signal whose primaries are others, in the signal that is shown. */
    std::vector<SolidSegment> wires(ColorSpaceScope::GamutWire primaries) const;
    std::vector<SolidCorner> corners() const;

    /** The colour of a signal of other primaries in the signal that is shown: by light of 0 to 1. */
    Color converted(ColorSpaceScope::GamutWire primaries, const Color& rgb) const;

private:
    using Mapping = std::function<QVector3D(const Color&)>;

    std::vector<SolidSegment> lines(const Mapping& mapping) const;

    ColorSpaceScope::Space m_space;
    ScopeEncoding m_encoding;
};

} // namespace Kestrel::UI
