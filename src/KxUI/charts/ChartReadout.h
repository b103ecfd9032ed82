#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QMetaType>
#include <QString>
#include <QVector>

#include <limits>

namespace Kestrel::UI {

/** What a chart shows at a place: a point, a bar or a slice of each series that has one there. A plain
    value. */
struct KXUI_EXPORT ChartReadout {
    /** What a series has there. */
    struct Item {
        QString name;                                            ///< of the series, or the slice
        QColor color;                                            ///< as it is drawn
        double value = std::numeric_limits<double>::quiet_NaN(); ///< as it was given
        QString text; ///< the value as it is read on its axis
    };

    /** The value of the horizontal axis, the number of a category from 0, or that of a slice. */
    double x = std::numeric_limits<double>::quiet_NaN();
    QString xText;       ///< the same as it is read
    QVector<Item> items; ///< in the order of the series; those without a value are left out
    int nearest = -1;    ///< which of the items the pointer is at; -1 for none

    /** Whether there is nothing. */
    bool isEmpty() const { return items.isEmpty(); }
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::ChartReadout)
