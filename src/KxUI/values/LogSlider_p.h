#pragma once

#include <KxUI/values/LogSliderTicks_p.h>

#include <QColor>

#include <optional>

namespace Kestrel::UI {

/** The data of a LogSlider. */
class LogSliderPrivate {
public:
    LogScale scale;
    QColor tickColor;
    QColor expTickColor;
    int tickTextSize = 8;
    bool drawLogTicks = true;

    std::optional<int> dragStart; ///< the position at the press, while a button is down
    Qt::MouseButton dragButton = Qt::NoButton;
    bool takenBack = false;      ///< and the rest of that drag goes unheeded
    bool menuSuppressed = false; ///< the right button took a drag back; that is all it meant
};

} // namespace Kestrel::UI
