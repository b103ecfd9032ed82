#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/ChartSeries.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

class BarSeriesPrivate;

/** A value for each category of a BarChart. A value that is not finite has no bar. Interface thread. */
class KXUI_EXPORT BarSeries : public ChartSeries {
    Q_OBJECT

public:
    /** Without values. */
    explicit BarSeries(QObject* parent = nullptr);
    ~BarSeries() override;

    /** The values of the categories 0, 1, 2 ... */
    std::vector<double> values() const;
    void setValues(std::vector<double> values);

private:
    const std::unique_ptr<BarSeriesPrivate> d;
};

} // namespace Kestrel::UI
