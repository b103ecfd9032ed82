#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/Chart.h>

#include <vector>

namespace Kestrel::UI {

class BarChartPrivate;
class BarSeries;
class ChartAxis;

/** Bars of categories. The axis of values reaches to 0. Left, Right, Up and Down move the read-out from
    bar to bar, Return clicks, Escape takes it away. Interface thread. */
class KXUI_EXPORT BarChart : public Chart {
    Q_OBJECT
    Q_PROPERTY(Arrangement arrangement READ arrangement WRITE setArrangement NOTIFY layoutChanged)
    Q_PROPERTY(
        Qt::Orientation orientation READ orientation WRITE setOrientation NOTIFY layoutChanged)
    Q_PROPERTY(bool sorted READ isSorted WRITE setSorted NOTIFY layoutChanged)

public:
    /** Where the bars of a category are. The numbers are part of saved settings. */
    enum Arrangement {
        Grouped, ///< side by side
        Stacked, ///< one on the other, those below 0 downwards
        Percent  ///< as Stacked, as parts of the sum of what they are without their signs
    };
    Q_ENUM(Arrangement)

    /** Without series; bars stand. */
    explicit BarChart(QWidget* parent = nullptr);
    ~BarChart() override;

    /** Takes a series over; null and those that are in already are ignored. */
    void addSeries(BarSeries* series);
    /** Gives a series back to the caller, without a parent; ignored for others. */
    void removeSeries(BarSeries* series);
    /** All, in the order in which they came. */
    std::vector<BarSeries*> series() const;

    /** The axes; the chart's own. The range of categories follows from their names and values. */
    ChartAxis* categoryAxis() const;
    ChartAxis* valueAxis() const;

    /** Where the bars of a category are; Grouped at first. */
    Arrangement arrangement() const;
    void setArrangement(Arrangement arrangement);

    /** Qt::Vertical, as at first, for bars that stand. */
    Qt::Orientation orientation() const;
    void setOrientation(Qt::Orientation orientation);

    /** Whether the category with the largest sum comes first; false at first. */
    bool isSorted() const;
    void setSorted(bool sorted);

Q_SIGNALS:
    /** Arrangement, orientation or order changed. */
    void layoutChanged();

private:
    BarChartPrivate* const p; // owned by Chart
};

} // namespace Kestrel::UI
