#include <KxUI/values/LogSliderAccessible_p.h>

#include <KxUI/values/LogSlider.h>
#include <KxUI/values/LogSlider_p.h>

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::LogSlider")) {
        if (auto* slider = qobject_cast<LogSlider*>(object))
            return new LogSliderAccessible(slider);
    }
    return nullptr;
}

} // namespace

LogSliderAccessible::LogSliderAccessible(LogSlider* slider)
    : QAccessibleWidget(slider, QAccessible::Slider) {}

void LogSliderAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

QString LogSliderAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return slider()->locale().toString(currentValue().toDouble(), 'g', 6);
    return QAccessibleWidget::text(kind);
}

void* LogSliderAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QVariant LogSliderAccessible::currentValue() const {
    return valueAt(slider()->value());
}

void LogSliderAccessible::setCurrentValue(const QVariant& value) {
    const LogScale& scale = slider()->d->scale;
    const double wanted = value.toDouble();
    if (std::isnan(wanted))
        return;
    const int position = scale.precision == 0 ? qRound(wanted) : scale.nearestTo(wanted);
    slider()->d->bracket.editOnce(std::clamp(position, slider()->minimum(), slider()->maximum()));
}

QVariant LogSliderAccessible::maximumValue() const {
    return valueAt(slider()->maximum());
}

QVariant LogSliderAccessible::minimumValue() const {
    return valueAt(slider()->minimum());
}

QVariant LogSliderAccessible::minimumStepSize() const {
    const int position = slider()->value();
    const int next = position < slider()->maximum() ? position + 1 : position - 1;
    return std::fabs(valueAt(next).toDouble() - valueAt(position).toDouble());
}

LogSlider* LogSliderAccessible::slider() const {
    return static_cast<LogSlider*>(object());
}

QVariant LogSliderAccessible::valueAt(int position) const {
    const LogScale& scale = slider()->d->scale;
    return scale.precision == 0 ? static_cast<double>(position) : scale.valueAt(position);
}

} // namespace Kestrel::UI
