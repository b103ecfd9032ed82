#pragma once

#include <KxUI/draw/CloudPoint.h>
#include <KxUI/scopes/ScopeSolid.h>
#include <KxUI/scopes/SolidProjection_p.h>
#include <KxUI/scopes/SolidShape_p.h>

#include <QColor>
#include <QPolygonF>

#include <cstdint>
#include <vector>

namespace Kestrel::UI {

/** A cell of a solid that is shown. */
struct SolidCell {
    std::uint32_t index; ///< by ScopeSolid::index
    SolidShape::Color rgb;
    QVector3D place;
    std::uint32_t count;   ///< pixels in it
    std::uint32_t outside; ///< pixels beyond the solid that it is next to
    float radius;          ///< logical pixels; 0: not drawn
};

/** What of a solid is shown, and how large. */
struct SolidRules {
    std::uint32_t least = 1; ///< cells of fewer pixels are not shown
    float lower = 0;         ///< of the slab, in luma; likewise
    float upper = 1;
    bool hasSlab = false;
    bool logarithmic = true; ///< sizes by the logarithm of counts, else areas in proportion
    double brightness = 0;   ///< stops
    bool singlePixels = true;
    double scale = 1; ///< of all sizes

    friend bool operator==(const SolidRules& a, const SolidRules& b) {
        return a.least == b.least && a.lower == b.lower && a.upper == b.upper &&
               a.hasSlab == b.hasSlab && a.logarithmic == b.logarithmic &&
               a.brightness == b.brightness && a.singlePixels == b.singlePixels &&
               a.scale == b.scale;
    }
};

/** The cells of a solid as a cloud of discs. */
class SolidCloud {
public:
    /** The cells that are shown, the first ones of `solid` first. */
    static std::vector<SolidCell> cells(const ScopeSolid& solid, const SolidShape& shape,
                                        const std::array<float, 3>& luma, const SolidRules& rules);

    /** How large a cell of so many pixels is drawn in a cloud whose fullest has `most`, in logical
        pixels; 0: not at all. */
    static float radius(std::uint32_t count, std::uint32_t most, const SolidRules& rules);
    /** The colour of a cell, light enough to be seen on black. */
    static QRgb color(const SolidShape::Color& rgb);

    /** Discs for the cells, with rings of `warning` around those that stand for pixels outside. */
    static std::vector<CloudPoint> points(const std::vector<SolidCell>& cells,
                                          const SolidProjection& projection, const QColor& warning,
                                          const QColor& ground);
};

/** Where cells are on a scope, for one orbit and size. */
class SolidPlaces {
public:
    SolidPlaces() = default;
    SolidPlaces(const std::vector<SolidCell>& cells, const SolidProjection& projection);

    /** The cell in front of all that cover a position or come within `slack` of it; of those that only
        come near, the one whose edge is nearest. -1 without any. */
    int cellAt(const QPointF& position, double slack) const;
    /** The cells whose middles lie inside, as they are numbered in the cells. */
    std::vector<int> cellsIn(const QPolygonF& polygon) const;
    QPointF place(int cell) const;
    double radius(int cell) const { return double(m_discs[std::size_t(cell)].radius); }

private:
    struct Disc {
        float x;
        float y;
        float depth;
        float radius; // 0: not drawn
    };

    std::vector<Disc> m_discs;
};

} // namespace Kestrel::UI
