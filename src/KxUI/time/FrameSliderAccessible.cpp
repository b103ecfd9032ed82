#include <KxUI/time/FrameSliderAccessible_p.h>

#include <KxUI/time/FrameSlider.h>
#include <KxUI/time/TimeFormatter.h>
#include <KxUI/values/LinearSlider.h>

namespace Kestrel::UI {

FrameSliderAccessible::FrameSliderAccessible(FrameSlider* slider)
    : RangeAccessible(slider, QAccessible::Slider) {}

FrameSlider* FrameSliderAccessible::slider() const {
    return widgetAs<FrameSlider>();
}

QString FrameSliderAccessible::valueText() const {
    const int frame = slider()->frame();
    return slider()->formatter() ? slider()->formatter()->formatTime(frame)
                                 : QString::number(frame);
}

QString FrameSliderAccessible::standardName() const {
    return FrameSlider::tr("Frame");
}

QVariant FrameSliderAccessible::currentValue() const {
    return slider()->frame();
}

void FrameSliderAccessible::setCurrentValue(const QVariant& value) {
    auto* inner = slider()->findChild<LinearSlider*>();
    if (QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(inner))
        seen->valueInterface()->setCurrentValue(value);
}

QVariant FrameSliderAccessible::minimumStepSize() const {
    return slider()->step();
}

} // namespace Kestrel::UI
