#pragma once

#include <QColor>

class QPalette;

namespace Kestrel::UI {

/** The slider's colours, all from the palette. */
struct TimeSliderColors {
    QColor window;   ///< around the ruler
    QColor empty;    ///< the ruler without a clip
    QColor clip;     ///< the ruler
    QColor playback; ///< the playback range
    QColor outside;  ///< before and after the clip
    QColor rangeBar;
    QColor rangeBarHover;
    QColor text;        ///< ticks and labels: the palette's colour that shows on the ruler
    QColor outsideText; ///< the same before and after the clip, `text` if that shows there too
    QColor sweep;       ///< the zoom rectangle's edges
    QColor focus;       ///< the line under the overview bar of a slider with the keyboard

    static TimeSliderColors of(const QPalette& palette);
};

} // namespace Kestrel::UI
