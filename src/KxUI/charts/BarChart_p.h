#pragma once

#include <KxUI/charts/BarChart.h>
#include <KxUI/charts/BarGeometry_p.h>
#include <KxUI/charts/BarSeries.h>
#include <KxUI/charts/Chart_p.h>

namespace Kestrel::UI {

class BarChartPrivate : public ChartPrivate {
public:
    void start(BarChart* barChart);
    bool areLying() const { return orientation == Qt::Horizontal; }

    void updateRanges() override;
    void arrange(const QRectF& area, qreal ratio) override;
    void draw(DrawingContext& context) override;
    void drawReadout(DrawingContext& context) override;
    QRectF readoutRect() const override;
    ChartReadout readoutAt(const QPointF& place) override;
    std::optional<QPointF> moved(const QPointF& from, int along, int across) override;
    std::vector<ChartItem> items() override;
    void setItemVisible(int index, bool visible) override;
    QString toText() const override;

    std::vector<BarSeries*> series;
    ChartAxis* categoryAxis = nullptr;
    ChartAxis* valueAxis = nullptr;
    BarChart::Arrangement arrangement = BarChart::Grouped;
    Qt::Orientation orientation = Qt::Vertical;
    bool isSorted = false;

private:
    std::vector<BarSeries*> visibleSeries() const;
    std::vector<std::vector<double>> visibleValues() const;
    QColor colorOfSeries(const BarSeries& one);
    void drawBar(DrawingContext& context, const Bar& bar, const BarSeries& one);
    void drawValues(DrawingContext& context);
    int slotAt(const QPointF& place) const;
    double categoryCount() const;

    PlotRules m_rules;
    PlotLayout m_layout;
    std::vector<QPointer<BarSeries>> m_shown; // a host may delete them at any time
    std::vector<Bar> m_bars;
};

} // namespace Kestrel::UI
