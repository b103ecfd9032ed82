#pragma once

#include <KxUI/Export.h>

#include <QMetaType>

namespace Kestrel::UI {

/** A colour in the host's working space: red, green and blue are light, unlimited in both
    directions; alpha is 0 to 1 and red, green and blue are not multiplied by it. A plain value,
    whose layout is frozen. */
struct KXUI_EXPORT ColorValue {
    float red = 0.0F;   ///< light, in the working space
    float green = 0.0F; ///< light, in the working space
    float blue = 0.0F;  ///< light, in the working space
    float alpha = 1.0F; ///< 0 for nothing to 1 for opaque

    /** The same four floats, so that a colour with a NaN equals nothing. */
    bool operator==(const ColorValue& other) const noexcept;
    bool operator!=(const ColorValue& other) const noexcept { return !(*this == other); }
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::ColorValue)
