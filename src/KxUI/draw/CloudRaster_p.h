#pragma once

#include <KxUI/draw/CloudPoint.h>

#include <QImage>
#include <QMatrix4x4>
#include <QSize>

namespace Kestrel::UI {

/** The largest radius of a point, in logical pixels. */
constexpr float LargestPointRadius = 64;

/** The discs of a cloud on a transparent image of `size` device pixels; of two points that are as
    near, the first is seen. A point covers the pixel that its middle lies in, and those whose
    middles lie within its radius. Tens of thousands of small discs are quicker this way than by a
    rasteriser of triangles on the processor. */
QImage rasterizeCloud(const QSize& size, qreal ratio, const QMatrix4x4& view,
                      const CloudPoint* points, int count);

} // namespace Kestrel::UI
