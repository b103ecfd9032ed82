#include <KxUI/values/LogSliderAccessible_p.h>

#include <KxUI/values/LogSlider.h>
#include <KxUI/values/LogSlider_p.h>

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {

LogSliderAccessible::LogSliderAccessible(LogSlider* slider)
    : ValueAccessible(slider, QAccessible::Slider) {}

QString LogSliderAccessible::valueText() const {
    return slider()->locale().toString(currentValue().toDouble(), 'g', 6);
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
    return widgetAs<LogSlider>();
}

QVariant LogSliderAccessible::valueAt(int position) const {
    const LogScale& scale = slider()->d->scale;
    return scale.precision == 0 ? static_cast<double>(position) : scale.valueAt(position);
}

} // namespace Kestrel::UI
