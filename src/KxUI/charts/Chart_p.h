#pragma once

#include <KxUI/charts/Chart.h>
#include <KxUI/charts/ChartPainting_p.h>
#include <KxUI/charts/ChartSeries.h>
#include <KxUI/draw/DrawingSurface_p.h>

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QRegion>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace Kestrel::UI {

/** A series, or a slice, as the legend and screen readers know it. */
struct ChartItem {
    QString name;
    QColor color;
    Qt::PenStyle style = Qt::SolidLine;
    bool isVisible = true;
    QString value;    ///< in words: the last one, or the share
    QString widest{}; ///< about the widest text that its values are read as; empty: it shows none
};

/** What kinds of charts fill in, and what they have in common. */
class ChartPrivate {
public:
    ChartPrivate();
    virtual ~ChartPrivate();
    ChartPrivate(const ChartPrivate&) = delete;
    ChartPrivate& operator=(const ChartPrivate&) = delete;

    static ChartPrivate* of(Chart* chart) { return chart->d.get(); }

    /** Finds the ranges of the axes that do so by themselves. */
    virtual void updateRanges() {}
    /** Keeps where everything lies in `area`. */
    virtual void arrange(const QRectF& area, qreal ratio) = 0;
    /** Draws what was arranged. */
    virtual void draw(DrawingContext& context) = 0;
    /** Draws what changes more often than the rest: it is not kept. */
    virtual void drawMarks(DrawingContext&) {}
    /** Draws what shows the read-out, but for its box. */
    virtual void drawReadout(DrawingContext& context) = 0;
    /** All that drawReadout draws into. */
    virtual QRectF readoutRect() const { return q->rect(); }
    /** What is shown at a place of the widget; fills `readoutSeries`, too, where series have values
        side by side. */
    virtual ChartReadout readoutAt(const QPointF& place) = 0;
    /** Moves the read-out by keys: `along` by so many points, `across` by so many series; where it is
        then in the widget. */
    virtual std::optional<QPointF> moved(const QPointF& from, int along, int across) = 0;
    virtual std::vector<ChartItem> items() = 0;
    virtual void setItemVisible(int index, bool visible) = 0;
    virtual QString toText() const = 0;
    /** Whether the event was used; the keys of the read-out come later. */
    virtual bool key(QKeyEvent*) { return false; }
    virtual bool wheel(QWheelEvent*) { return false; }
    virtual bool press(QMouseEvent*) { return false; }
    virtual bool drag(QMouseEvent*) { return false; }
    virtual bool drop(QMouseEvent*) { return false; }
    virtual void showAll() {}

    /** Once, by the constructor of the chart. */
    void begin(Chart* chart);
    /** Takes a series in, as a child of the chart, and listens to it. */
    void adopt(ChartSeries* series);
    /** Gives it back. */
    void release(ChartSeries* series);
    /** A place among the colours, kept as long as the object lives. */
    int colorIndex(const QObject* series);
    QColor colorOf(const QString& key, const QColor& own, int index) const;
    static Qt::PenStyle styleOf(int index);

    /** Data changed: ranges and picture follow soon. */
    void dataChanged();
    /** Only the picture changed: it is drawn with the next paint event. */
    void lookChanged();
    void itemsChanged();
    void refresh();

    void setHover(const std::optional<QPointF>& place);
    void updateReadout();
    ChartLook look() const;
    QRectF plotArea() const;
    void placeLegend();
    void paint(DrawingContext& context);
    void paintWith(DrawingContext& context, const QSizeF& size);

    Chart* q = nullptr;
    QString title;
    std::shared_ptr<IChartColorProvider> provider;
    ChartLegend* legend = nullptr;
    std::optional<DrawingSurface> surface;
    std::optional<QPointF> hover;
    ChartReadout readout;
    std::vector<int> readoutSeries; ///< of each item of the read-out
    int chosen = 0;                 ///< the item that keys read

private:
    void drawTitle(DrawingContext& context, const QRectF& rect) const;
    const QImage& picture();
    QRegion readoutRegion() const;
    void showValuesInLegend();

    QTimer m_timer;
    QElapsedTimer m_sinceRefresh;
    bool m_isStale = true;   ///< data changed since ranges were found
    QImage m_picture;        ///< of all but the read-out
    QRegion m_readoutRegion; ///< that the read-out was drawn into
    bool m_isDrawn = false;  ///< whether the picture shows the chart as it is
    QHash<const QObject*, int> m_colorIndices;
};

} // namespace Kestrel::UI
