#pragma once

#include <KxUI/values/LogSliderTicks_p.h>

#include <QLine>
#include <QRect>
#include <QString>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** The room of a logarithmic slider, in the coordinates of the widget. */
struct LogSliderRoom {
    QSize size;
    QRect groove;
    QRect handle;
    Qt::Orientation orientation = Qt::Horizontal;
    bool forward = true; ///< values grow rightwards or downwards
};

/** The text of a value, and its width in pixels. */
struct LogSliderText {
    QString text;
    int width = 0;
};

/** A tick as it is drawn. */
struct LogSliderMark {
    QLine line;
    bool wholePower = false;
};

/** A label as it is drawn: on a vertical slider by a painter turned clockwise by 90 degrees, whose
    x runs down and whose y runs from right to left. */
struct LogSliderLabel {
    QRect room; ///< as wide as the text
    QString text;
    bool wholePower = false;
};

/** Where ticks and labels of a logarithmic slider are. */
struct LogSliderLayout {
    std::vector<LogSliderMark> marks;
    std::vector<LogSliderLabel> labels;

    static LogSliderLayout of(const LogScale& scale, const LogSliderRoom& room,
                              const std::function<LogSliderText(double)>& textOf);
};

} // namespace Kestrel::UI
