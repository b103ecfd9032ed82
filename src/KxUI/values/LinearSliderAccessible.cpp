#include <KxUI/values/LinearSliderAccessible_p.h>

#include <KxUI/values/LinearSlider_p.h>

#include <cmath>

namespace Kestrel::UI {

LinearSliderAccessible::LinearSliderAccessible(LinearSlider* slider)
    : RangeAccessible(slider, QAccessible::Slider) {}

QString LinearSliderAccessible::valueText() const {
    return LinearSliderPrivate::of(slider())->numberText(slider()->value());
}

QVariant LinearSliderAccessible::currentValue() const {
    return slider()->value();
}

void LinearSliderAccessible::setCurrentValue(const QVariant& value) {
    bool isNumber = false;
    const double wanted = value.toDouble(&isNumber);
    LinearSliderPrivate* const own = LinearSliderPrivate::of(slider());
    if (isNumber && std::isfinite(wanted))
        own->bracket->editOnce(own->editable(wanted));
}

QVariant LinearSliderAccessible::minimumStepSize() const {
    return slider()->singleStep();
}

} // namespace Kestrel::UI
