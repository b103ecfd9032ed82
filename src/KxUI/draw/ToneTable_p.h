#pragma once

#include <KxUI/draw/IntensityGrid.h>
#include <KxUI/draw/ToneCurve.h>

#include <QColor>
#include <QImage>
#include <QRgb>

#include <vector>

namespace Kestrel::UI {

/** The light of every density, by the upper bits of its float: as exact as eight bits can show, and a
    load where a logarithm would be. */
class ToneTable {
public:
    ToneTable(const ToneCurve& tone, const QColor& color);

    /** Premultiplied. */
    QRgb at(float density) const;

private:
    std::vector<QRgb> m_light;
};

/** The light of a whole grid, a pixel for each density. */
QImage lightOf(const IntensityGrid& grid, const ToneCurve& tone, const QColor& color);

} // namespace Kestrel::UI
