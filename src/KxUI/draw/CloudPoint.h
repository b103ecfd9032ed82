#pragma once

#include <KxUI/Export.h>

#include <QRgb>

namespace Kestrel::UI {

/** A point of a cloud in space, drawn as an opaque disc. A plain value; its layout is frozen. */
struct KXUI_EXPORT CloudPoint {
    float x = 0;                      ///< in the space that the view matrix reads; likewise below
    float y = 0;                      ///< its y
    float z = 0;                      ///< its z
    float radius = 1;                 ///< logical pixels; up to 64 are drawn
    QRgb color = qRgb(255, 255, 255); ///< its alpha is not read
};

} // namespace Kestrel::UI
