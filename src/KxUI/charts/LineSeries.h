#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/ChartSeries.h>

#include <QPointF>

#include <cstddef>
#include <memory>
#include <vector>

namespace Kestrel::UI {

class LineChart;
class LineData;
class LineSeriesPrivate;

/** Points of a line, in ascending order of x. A y that is not finite is a gap. Interface thread. */
class KXUI_EXPORT LineSeries : public ChartSeries {
    Q_OBJECT
    Q_PROPERTY(Style style READ style WRITE setStyle NOTIFY lookChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY lookChanged)
    Q_PROPERTY(bool onRightAxis READ isOnRightAxis WRITE setOnRightAxis NOTIFY lookChanged)

public:
    /** How points are drawn. The numbers are part of saved settings. */
    enum Style {
        Line,  ///< joined by straight lines
        Step,  ///< each value lasts until the next point
        Area,  ///< as Line, and the ground down to 0 is filled
        Points ///< dots
    };
    Q_ENUM(Style)

    /** Without points. */
    explicit LineSeries(QObject* parent = nullptr);
    ~LineSeries() override;

    /** Takes these points in place of all others: as many as the shorter list has, sorted by x, those
        left out whose x is not finite. */
    void setData(std::vector<double> x, std::vector<double> y);

    /** Adds a point, in constant time on average. False, and nothing happens, where x is not finite or
        lies before that of the last point. */
    bool append(double x, double y);

    /** Removes all points. */
    void clear();

    /** How many points are kept: the newest ones. 0, as at first, keeps all. */
    std::size_t capacity() const;
    void setCapacity(std::size_t points);

    /** How many points there are. */
    std::size_t size() const;

    /** A point, `index` from 0 to size() - 1; both are not numbers for any other. */
    QPointF at(std::size_t index) const;

    /** The point whose x is nearest; both are not numbers where there is none. */
    QPointF nearest(double x) const;

    /** How points are drawn; Line at first. */
    Style style() const;
    void setStyle(Style style);

    /** The width of the line in logical pixels, 0.5 to 8; 1.5 at first. */
    double width() const;
    void setWidth(double width);

    /** Whether the values are read on the right axis; false at first. */
    bool isOnRightAxis() const;
    void setOnRightAxis(bool right);

private:
    friend class LineSeriesPrivate;

    const std::unique_ptr<LineSeriesPrivate> d;
};

} // namespace Kestrel::UI
