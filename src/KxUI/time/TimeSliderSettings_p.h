#pragma once

#include <QColor>

namespace Kestrel::UI {

/** What all time sliders share. */
struct TimeSliderSettings {
    QColor inOutMarker = Qt::magenta;
    QColor keyFrame = Qt::magenta;
    QColor standardPlayhead = Qt::magenta;
    bool doublePlayhead = false;
    bool followPlayhead = true;

    static TimeSliderSettings& all();
};

} // namespace Kestrel::UI
