#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class Chart;
class ChartLegendPrivate;

/** The list of what a chart shows. A click, Space or Return on an entry hides and shows it; with Alt it
    shows that one alone, and all again. Belongs to its chart. Interface thread. */
class KXUI_EXPORT ChartLegend : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Qt::Edge position READ position WRITE setPosition NOTIFY positionChanged)

public:
    /** For a chart, which makes its own. */
    explicit ChartLegend(Chart* chart);
    ~ChartLegend() override;

    /** The edge of the chart that it lies at; the lower one at first. */
    Qt::Edge position() const;
    void setPosition(Qt::Edge edge);

    /** Whether it is shown as soon as there is more than one entry; true at first. */
    bool isShown() const;
    void setShown(bool shown);

    /** The height that the entries take in this width, in logical pixels. */
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override;
    QSize sizeHint() const override;

Q_SIGNALS:
    /** It lies at another edge, or is shown or not. */
    void positionChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    friend class ChartLegendPrivate;

    const std::unique_ptr<ChartLegendPrivate> d;
};

} // namespace Kestrel::UI
