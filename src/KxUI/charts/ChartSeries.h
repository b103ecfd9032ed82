#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QObject>
#include <QString>

#include <memory>

namespace Kestrel::UI {

class ChartSeriesPrivate;

/** What all series of charts have. A series belongs to the chart that it was added to; deleting it takes it
    out. Interface thread. */
class KXUI_EXPORT ChartSeries : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY lookChanged)
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY lookChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY lookChanged)
    Q_PROPERTY(bool visible READ isVisible WRITE setVisible NOTIFY visibilityChanged)

public:
    ~ChartSeries() override;

    /** What the legend says. */
    QString name() const;
    void setName(const QString& name);

    /** What the colour provider knows the series by; the name where none was set. */
    QString key() const;
    void setKey(const QString& key);

    /** The colour; invalid, as at first, leaves it to the provider of the chart. */
    QColor color() const;
    void setColor(const QColor& color);

    /** Whether the series is drawn; true at first. */
    bool isVisible() const;
    void setVisible(bool visible);

Q_SIGNALS:
    /** Values changed. */
    void dataChanged();
    /** Name, key, colour or style changed. */
    void lookChanged();
    /** The series is drawn from now on, or no more. */
    void visibilityChanged(bool visible);

protected:
    /** For the kinds of series. */
    explicit ChartSeries(QObject* parent);

private:
    const std::unique_ptr<ChartSeriesPrivate> d;
};

} // namespace Kestrel::UI
