#pragma once

#include <KxUI/charts/Chart_p.h>
#include <KxUI/charts/LineChart.h>
#include <KxUI/charts/LineData_p.h>
#include <KxUI/charts/LineSeries.h>
#include <KxUI/charts/PlotLayout_p.h>

#include <QMetaObject>

#include <array>

namespace Kestrel::UI {

class LineChartPrivate : public ChartPrivate {
public:
    void start(LineChart* lineChart);

    void updateRanges() override;
    void arrange(const QRectF& area, qreal ratio) override;
    void draw(DrawingContext& context) override;
    void drawMarks(DrawingContext& context) override;
    void drawReadout(DrawingContext& context) override;
    QRectF readoutRect() const override;
    ChartReadout readoutAt(const QPointF& place) override;
    std::optional<QPointF> moved(const QPointF& from, int along, int across) override;
    std::vector<ChartItem> items() override;
    void setItemVisible(int index, bool visible) override;
    QString toText() const override;
    bool key(QKeyEvent* event) override;
    bool wheel(QWheelEvent* event) override;
    bool press(QMouseEvent* event) override;
    bool drag(QMouseEvent* event) override;
    bool drop(QMouseEvent* event) override;
    void showAll() override;

    QColor colorOfSeries(const LineSeries& one);
    const AxisScale& scaleOf(const LineSeries& one) const;
    void showX(double lower, double upper);
    void zoom(double pixel, double factor);
    void pan(double pixels, double down);
    void setFollowing(bool follows);
    void setCursor(double x);

    LineChart* chart = nullptr;
    std::vector<LineSeries*> series;
    ChartAxis* xAxis = nullptr;
    ChartAxis* yAxis = nullptr;
    ChartAxis* rightAxis = nullptr;
    std::vector<ChartBand> bands;
    bool isFollowing = false;
    double cursor = qQNaN();
    QPointer<LineChart> linked;
    std::array<QMetaObject::Connection, 2> links;

private:
    enum class Drag { None, Pressed, Panning, Taking };

    QRect cursorRect() const;
    Extent extentOfX() const;
    Extent extentOfY(bool right) const;
    void drawBands(DrawingContext& context);
    void drawBandNames(DrawingContext& context);
    void drawSeries(DrawingContext& context, LineSeries& one);
    PlotRules rulesOf(const QRectF& area, qreal ratio) const;
    LineSeries* chosenSeries();
    double nearestX(double wanted) const;

    PlotRules m_rules;
    PlotLayout m_layout;
    Drag m_drag = Drag::None;
    QPointF m_dragStart;
    QPointF m_dragLast;
};

} // namespace Kestrel::UI
