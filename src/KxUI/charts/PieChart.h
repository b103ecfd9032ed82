#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/Chart.h>

namespace Kestrel::UI {

class PieChartPrivate;
class PieSeries;

/** A pie or a ring, with the whole in the middle of the ring. Left and Right move the read-out from slice
    to slice, Return clicks, Escape takes it away. Interface thread. */
class KXUI_EXPORT PieChart : public Chart {
    Q_OBJECT
    Q_PROPERTY(LabelPlace labelPlace READ labelPlace WRITE setLabelPlace NOTIFY labelPlaceChanged)

public:
    /** Where names and shares are. The numbers are part of saved settings. */
    enum LabelPlace {
        Outside, ///< beside the pie, on lines that lead there; in the legend where there is no room
        Inside,  ///< shares on the slices that have room for them
        LegendOnly ///< in the legend and the read-out
    };
    Q_ENUM(LabelPlace)

    /** With a series without slices. */
    explicit PieChart(QWidget* parent = nullptr);
    ~PieChart() override;

    /** Takes a series over in place of the present one, which is deleted; null stands for a new one
        without slices. */
    void setSeries(PieSeries* series);
    /** The series; never null but after a host deleted it. */
    PieSeries* series() const;

    /** Where names and shares are; Outside at first. */
    LabelPlace labelPlace() const;
    void setLabelPlace(LabelPlace place);

Q_SIGNALS:
    /** Labels are at another place. */
    void labelPlaceChanged();

private:
    PieChartPrivate* const p; // owned by Chart
};

} // namespace Kestrel::UI
