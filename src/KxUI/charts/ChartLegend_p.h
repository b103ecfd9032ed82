#pragma once

#include <KxUI/charts/ChartLegend.h>
#include <KxUI/charts/Chart_p.h>

#include <QAbstractButton>
#include <QPointer>

#include <vector>

class QScrollArea;

namespace Kestrel::UI {

/** An entry of a legend: what a check box is, but for its look. */
class LegendEntry : public QAbstractButton {
    Q_OBJECT

public:
    LegendEntry(Chart* chart, QWidget* parent);

    void show(const ChartItem& item);
    /** Shows a value behind the name; whether it takes more room than any before. */
    bool showValue(const QString& value);
    QSize sizeHint() const override;

Q_SIGNALS:
    void alone();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int roomOf(const QString& value) const;

    Chart* const m_chart;
    ChartItem m_item;
    QString m_value;
    int m_room = 0; // that values take
};

class ChartLegendPrivate {
public:
    explicit ChartLegendPrivate(ChartLegend* legend, Chart* owner);

    static ChartLegendPrivate* of(ChartLegend* legend) { return legend->d.get(); }

    /** Whether there is something to list. */
    bool isWanted() const;
    void setItems(const std::vector<ChartItem>& items);
    /** Shows the values of some of the series, by their places; whether entries grew. */
    bool showValues(const std::vector<QString>& values);
    /** Places the entries, and a scroll bar where they need one. */
    void arrange();
    /** Places the entries in a width; how high they are. */
    int flow(int width, bool isMoving) const;
    void showAlone(int index);

    ChartLegend* const q;
    Chart* const chart;
    Qt::Edge edge = Qt::BottomEdge;
    bool isShown = true;
    QScrollArea* area = nullptr;
    QWidget* inside = nullptr;
    std::vector<LegendEntry*> entries;
};

} // namespace Kestrel::UI
