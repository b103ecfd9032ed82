#pragma once

#include <KxUI/Export.h>
#include <KxUI/draw/Ticks.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Kestrel::UI {

class ChartAxisPrivate;

/** An axis of a chart: which values lie between its ends, and how they are written. Belongs to its
    chart. Interface thread. */
class KXUI_EXPORT ChartAxis : public QObject {
    Q_OBJECT
    Q_PROPERTY(double lower READ lower NOTIFY rangeChanged)
    Q_PROPERTY(double upper READ upper NOTIFY rangeChanged)
    Q_PROPERTY(bool autoRange READ isAutoRange WRITE setAutoRange NOTIFY changed)
    Q_PROPERTY(bool logarithmic READ isLogarithmic WRITE setLogarithmic NOTIFY changed)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(QStringList categories READ categories WRITE setCategories NOTIFY changed)
    Q_PROPERTY(bool gridVisible READ isGridVisible WRITE setGridVisible NOTIFY changed)

public:
    /** From 0 to 1, finding its range by itself. */
    explicit ChartAxis(QObject* parent = nullptr);
    ~ChartAxis() override;

    /** The ends of the axis; lower() is below upper(). */
    double lower() const;
    double upper() const;
    /** Shows this range, in either order, within the limits, and finds none by itself any more.
        Ignored where it is empty or not finite, and on a logarithmic axis where it reaches down to 0. */
    void setRange(double lower, double upper);

    /** Whether the chart keeps all data within the range; true at first. */
    bool isAutoRange() const;
    void setAutoRange(bool automatic);

    /** What no range goes beyond; all that a double holds at first. Ignored like a range. */
    void setLimits(double lowest, double highest);

    /** Whether powers of ten are in equal steps; false at first. Values that are not above 0 are not
        drawn then. */
    bool isLogarithmic() const;
    void setLogarithmic(bool logarithmic);

    /** What the values are; Plain at first. */
    Ticks::Unit unit() const;
    void setUnit(Ticks::Unit unit);

    /** What the axis shows; empty at first. */
    QString title() const;
    void setTitle(const QString& title);

    /** The names of the places 0, 1, 2 ... of an axis of categories. */
    QStringList categories() const;
    void setCategories(const QStringList& categories);

    /** The text of a value, in place of that of the unit; null takes it back. Called while painting. */
    void setFormatter(std::function<QString(double)> formatter);

    /** Whether lines go through the plot at each tick; true at first. */
    bool isGridVisible() const;
    void setGridVisible(bool visible);

    /** A value as it is read on this axis. */
    QString text(double value) const;

Q_SIGNALS:
    /** The range became another one. */
    void rangeChanged(double lower, double upper);
    /** Anything but the range changed. */
    void changed();

private:
    friend class ChartAxisPrivate;

    const std::unique_ptr<ChartAxisPrivate> d;
};

} // namespace Kestrel::UI
