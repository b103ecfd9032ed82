#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QString>

namespace Kestrel::UI {

/** Gives series their colours. Asked by charts whenever they paint, on the interface thread; it must
    answer the same until a chart is told to paint again. */
class KXUI_EXPORT IChartColorProvider {
public:
    virtual ~IChartColorProvider();

    /** The colour of a series. `key` is the series' own (ChartSeries::key()); `index` is its place among
        those of its chart, from 0, which stays the same as long as the series is in it; `background`
        is what it is drawn on. */
    virtual QColor color(const QString& key, int index, const QColor& background) = 0;
};

} // namespace Kestrel::UI
