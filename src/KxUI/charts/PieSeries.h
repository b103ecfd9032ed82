#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/PieSlice.h>
#include <KxUI/draw/Ticks.h>

#include <QObject>

#include <memory>
#include <vector>

namespace Kestrel::UI {

class PieSeriesPrivate;

/** The slices of a PieChart. Interface thread. */
class KXUI_EXPORT PieSeries : public QObject {
    Q_OBJECT
    Q_PROPERTY(double hole READ hole WRITE setHole NOTIFY changed)
    Q_PROPERTY(double othersBelow READ othersBelow WRITE setOthersBelow NOTIFY changed)

public:
    /** Without slices. */
    explicit PieSeries(QObject* parent = nullptr);
    ~PieSeries() override;

    /** The slices, clockwise from the top. Hidden ones stay hidden as long as their place has the same
        key. */
    std::vector<PieSlice> slices() const;
    void setSlices(std::vector<PieSlice> slices);

    /** How many slices are not drawn for their value: below 0, or not finite. */
    int invalidCount() const;

    /** Whether a slice counts; true for places that there are not. */
    bool isSliceVisible(int index) const;
    void setSliceVisible(int index, bool visible);

    /** The radius of the hole over that of the pie, 0 to 0.9; 0.55 at first. */
    double hole() const;
    void setHole(double part);

    /** The share below which slices are shown together as "Others", 0 to 0.5; 0.015 at first. A single
        one stays by itself. */
    double othersBelow() const;
    void setOthersBelow(double share);

    /** What the values are; Plain at first. */
    Ticks::Unit unit() const;
    void setUnit(Ticks::Unit unit);

Q_SIGNALS:
    /** Anything of it changed. */
    void changed();

private:
    const std::unique_ptr<PieSeriesPrivate> d;
};

} // namespace Kestrel::UI
