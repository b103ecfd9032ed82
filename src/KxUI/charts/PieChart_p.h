#pragma once

#include <KxUI/charts/Chart_p.h>
#include <KxUI/charts/PieChart.h>
#include <KxUI/charts/PieGeometry_p.h>
#include <KxUI/charts/PieSeries.h>

namespace Kestrel::UI {

class PieChartPrivate : public ChartPrivate {
public:
    void take(PieChart* pieChart, PieSeries* other);

    void arrange(const QRectF& area, qreal ratio) override;
    void draw(DrawingContext& context) override;
    void drawReadout(DrawingContext& context) override;
    ChartReadout readoutAt(const QPointF& place) override;
    std::optional<QPointF> moved(const QPointF& from, int along, int across) override;
    std::vector<ChartItem> items() override;
    void setItemVisible(int index, bool visible) override;
    QString toText() const override;

    QPointer<PieSeries> series;
    PieChart::LabelPlace labelPlace = PieChart::Outside;

private:
    std::vector<PieSector> sectors() const;
    QColor colorOfSector(const PieSector& sector) const;
    QColor colorOfSlice(int index) const;
    QString nameOf(const PieSector& sector) const;
    QString valueText(double value) const;
    int sectorAt(const QPointF& place) const;
    void drawLabels(DrawingContext& context, bool onRight);
    void drawShares(DrawingContext& context);
    void drawNothing(DrawingContext& context);
    void drawWhole(DrawingContext& context);

    std::vector<PieSector> m_sectors;
    QRectF m_area;
    QPointF m_middle;
    double m_outer = 0;
    double m_inner = 0;
    bool m_hasLabels = false;
};

} // namespace Kestrel::UI
