#pragma once

#include <KxUI/charts/ChartAxis.h>

#include <cfloat>

namespace Kestrel::UI {

class ChartAxisPrivate {
public:
    static ChartAxisPrivate* of(ChartAxis* axis) { return axis->d.get(); }
    static const ChartAxisPrivate* of(const ChartAxis* axis) { return axis->d.get(); }

    /** Stores a range that may be shown, widened where it is a single value, and tells it; false
        where it may not. */
    bool show(ChartAxis* axis, double from, double to);
    /** Shows what data reach over; nothing where lowest is above highest. */
    void showData(ChartAxis* axis, double lowest, double highest, double margin);

    double lower = 0;
    double upper = 1;
    // Differences of values stay within what a double holds.
    double lowest = -DBL_MAX / 2;
    double highest = DBL_MAX / 2;
    bool isAutomatic = true;
    bool isLogarithmic = false;
    bool hasGrid = true;
    Ticks::Unit unit = Ticks::Plain;
    QString title;
    QStringList categories;
    std::function<QString(double)> formatter;
};

/** About the widest text of the values that an axis shows. */
QString widestText(const ChartAxis& axis);

} // namespace Kestrel::UI
