#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/values/LogSlider.h>
#include <KxUI/values/LogSliderTicks_p.h>

#include <QColor>

#include <optional>

namespace Kestrel::UI {

/** The data of a LogSlider. */
class LogSliderPrivate {
public:
    explicit LogSliderPrivate(LogSlider* slider);

    /** Shows a position again that an edit began at. */
    void goTo(int position);
    /** Whether the button of a drag, or of paging, is down, and nothing else ended that. */
    bool isHeld() const { return dragStart && !bracket.isAdrift(); }

    LogSlider* q;
    EditBracket<LogSlider, int> bracket; ///< of positions
    LogScale scale;
    QColor tickColor;
    QColor expTickColor;
    int tickTextSize = 8;
    bool drawLogTicks = true;
    bool byUser = false; ///< the next change is the user's

    std::optional<int> dragStart; ///< the position at the press, while a button is down
    Qt::MouseButton dragButton = Qt::NoButton;
    int pressedAt = 0;           ///< along the groove, in pixels
    bool takenBack = false;      ///< and the rest of that drag goes unheeded
    bool menuSuppressed = false; ///< the right button took a drag back; that is all it meant
};

} // namespace Kestrel::UI
