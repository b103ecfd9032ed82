#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/ChartReadout.h>
#include <KxUI/draw/Drawing.h>

#include <QByteArray>
#include <QImage>
#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ChartLegend;
class ChartPrivate;
class IChartColorProvider;

/** What all charts have: a title, a legend, colours, a read-out of what lies under the pointer or the
    crosshair of the keyboard, and pictures and texts of itself. It is drawn in the colours Base and
    Text of its palette, and at most thirty times a second while data change. Interface thread. */
class KXUI_EXPORT Chart : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)

public:
    ~Chart() override;

    /** What is written above the chart; empty at first. */
    QString title() const;
    void setTitle(const QString& title);

    /** What the chart is drawn by; the painter at first. */
    Drawing drawing() const;
    void setDrawing(Drawing drawing);
    /** Whether OpenGL draws. */
    bool usesOpenGL() const;

    /** Where colours come from; null is a ChartColorProvider of the chart's own, as at first. Set it
        again after it changed its mind. */
    void setColorProvider(std::shared_ptr<IChartColorProvider> provider);

    /** The list of the series; the chart's own child, at its lower edge at first. */
    ChartLegend* legend() const;

    /** A picture with the legend, of this many logical pixels (those of the widget for an empty size) of
        `ratio` device pixels each. */
    QImage toImage(const QSize& size = QSize(), qreal ratio = 1) const;
    /** The same as SVG 1.1. */
    QByteArray toSvg(const QSize& size = QSize()) const;
    /** The data of all series, hidden ones too, as a table: tabs between columns, "." in numbers, a line
        of names first. A gap is an empty field. */
    QString toText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Puts table and picture into the clipboard. */
    void copy();

Q_SIGNALS:
    /** The title became another one. */
    void titleChanged(const QString& title);
    /** The read-out became another one, by the pointer or by keys. */
    void hovered(const Kestrel::UI::ChartReadout& readout);
    /** There is no read-out any more. */
    void hoverLeft();
    /** The user clicked, or pressed Return on a read-out. */
    void clicked(const Kestrel::UI::ChartReadout& readout);
    /** OpenGL failed, and the painter took over. */
    void drawingChanged();

protected:
    /** For the kinds of charts. */
    Chart(std::unique_ptr<ChartPrivate> facts, QWidget* parent);

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    friend class ChartPrivate;

    const std::unique_ptr<ChartPrivate> d;
};

} // namespace Kestrel::UI
