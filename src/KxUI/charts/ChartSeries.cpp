#include <KxUI/charts/ChartSeries.h>

#include <KxUI/kit/InterfaceThread_p.h>

#include <utility>

namespace Kestrel::UI {

class ChartSeriesPrivate {
public:
    QString name;
    QString key;
    QColor color;
    bool isVisible = true;
};

ChartSeries::ChartSeries(QObject* parent)
    : QObject(parent)
    , d(std::make_unique<ChartSeriesPrivate>()) {}

ChartSeries::~ChartSeries() = default;

QString ChartSeries::name() const {
    return d->name;
}

void ChartSeries::setName(const QString& name) {
    KXUI_INTERFACE_THREAD(this);
    if (d->name == name)
        return;
    d->name = name;
    Q_EMIT lookChanged();
}

QString ChartSeries::key() const {
    return d->key.isEmpty() ? d->name : d->key;
}

void ChartSeries::setKey(const QString& key) {
    KXUI_INTERFACE_THREAD(this);
    if (d->key == key)
        return;
    d->key = key;
    Q_EMIT lookChanged();
}

QColor ChartSeries::color() const {
    return d->color;
}

void ChartSeries::setColor(const QColor& color) {
    KXUI_INTERFACE_THREAD(this);
    if (d->color == color)
        return;
    d->color = color;
    Q_EMIT lookChanged();
}

bool ChartSeries::isVisible() const {
    return d->isVisible;
}

void ChartSeries::setVisible(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (std::exchange(d->isVisible, visible) != visible)
        Q_EMIT visibilityChanged(visible);
}

} // namespace Kestrel::UI
