#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QString>

namespace Kestrel::UI {

/** A part of the vertical axis of a LineChart that is marked, as the time that a frame may take. A plain
    value. */
struct KXUI_EXPORT ChartBand {
    double lower = 0; ///< where it begins
    double upper = 0; ///< where it ends; the same as `lower` for a line
    QColor
        color; ///< of a line, and mixed into the ground of a band; invalid takes that of the text
    QString label; ///< written at its upper edge; may be empty
};

} // namespace Kestrel::UI
