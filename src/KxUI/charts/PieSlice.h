#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QString>

namespace Kestrel::UI {

/** A part of a whole. A plain value. */
struct KXUI_EXPORT PieSlice {
    QString name;     ///< what the label says
    double value = 0; ///< its size; below 0, or not finite, it is not drawn
    QString key;      ///< what the colour provider knows it by; the name where it is empty
    QColor color;     ///< invalid leaves it to the provider
};

} // namespace Kestrel::UI
