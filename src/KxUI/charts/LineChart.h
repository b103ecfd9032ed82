#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/Chart.h>
#include <KxUI/charts/ChartBand.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

class ChartAxis;
class LineChartPrivate;
class LineSeries;

/** Lines over a common horizontal axis, with one vertical axis at each side. A repaint takes time for
    its pixels, not for its points.

    The wheel zooms the horizontal axis about the pointer, with Shift the vertical ones; dragging with the
    left or the middle button moves the plot, dragging with Shift takes a part of it; a double click
    shows everything. Left and Right move the cross-hair from point to point (ten with Shift), Up and
    Down change the series, Plus and Minus zoom, Page Up and Page Down move the plot, Home shows
    everything, Return clicks, Escape takes the cross-hair away. Interface thread. */
class KXUI_EXPORT LineChart : public Chart {
    Q_OBJECT
    Q_PROPERTY(bool following READ isFollowing WRITE setFollowing NOTIFY followingChanged)
    Q_PROPERTY(double cursor READ cursor WRITE setCursor NOTIFY cursorChanged)

public:
    /** Without series. */
    explicit LineChart(QWidget* parent = nullptr);
    ~LineChart() override;

    /** Takes a series over; null and those that are in already are ignored. */
    void addSeries(LineSeries* series);
    /** Gives a series back to the caller, without a parent; ignored for others. */
    void removeSeries(LineSeries* series);
    /** All, in the order in which they came. */
    std::vector<LineSeries*> series() const;

    /** The axes; the chart's own. */
    ChartAxis* xAxis() const;
    ChartAxis* yAxis() const;
    /** Drawn while a visible series is on it. */
    ChartAxis* rightAxis() const;

    /** Parts of the left axis that are marked. */
    void setBands(const std::vector<ChartBand>& bands);

    /** Whether the horizontal axis, keeping its length, ends where the data do; false at first. Moving
        the plot or setting its range ends it. An axis that finds its range by itself begins to follow
        at the length that it has. */
    bool isFollowing() const;
    void setFollowing(bool following);

    /** A line at a value of the horizontal axis, as the playhead; not a number for none, as at first. */
    double cursor() const;
    void setCursor(double x);

    /** Shows the same part of the horizontal axis as `other` from now on, each way, until one of both
        goes; null ends it. */
    void linkTo(LineChart* other);

    /** Shows all data: the axes find their ranges by themselves again. */
    void showAll();

Q_SIGNALS:
    /** The chart follows its data from now on, or no more. */
    void followingChanged(bool following);
    /** The cursor is at another value. */
    void cursorChanged(double x);

private:
    friend class LineChartPrivate;

    LineChartPrivate* const p; // owned by Chart
};

} // namespace Kestrel::UI
