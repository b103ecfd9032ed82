#include <KxUI/time/TimeSliderAccessible_p.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

QVariant valueOf(Base::Time time) {
    return time == Base::InvalidTime ? QVariant() : QVariant(qlonglong{time});
}

} // namespace

TimeSliderAccessible::TimeSliderAccessible(TimeSlider* slider)
    : ValueAccessible(slider, QAccessible::Slider) {}

TimeSlider* TimeSliderAccessible::slider() const {
    return widgetAs<TimeSlider>();
}

QString TimeSliderAccessible::valueText() const {
    return slider()->model() && slider()->formatter()
               ? slider()->formatter()->formatTime(slider()->model()->currentTime())
               : QString();
}

QString TimeSliderAccessible::standardName() const {
    return TimeSlider::tr("Timeline");
}

QVariant TimeSliderAccessible::currentValue() const {
    return slider()->model() ? valueOf(slider()->model()->currentTime()) : QVariant();
}

void TimeSliderAccessible::setCurrentValue(const QVariant& value) {
    TimeSliderModel* model = slider()->model();
    bool isNumber = false;
    const qlonglong wanted = value.toLongLong(&isNumber);
    if (!model || !isNumber || !(model->duration() >= 1))
        return;
    model->setCurrentTime(
        std::clamp(static_cast<Base::Time>(wanted), model->startTime(), model->endTime()));
}

QVariant TimeSliderAccessible::maximumValue() const {
    return slider()->model() ? valueOf(slider()->model()->endTime()) : QVariant();
}

QVariant TimeSliderAccessible::minimumValue() const {
    return slider()->model() ? valueOf(slider()->model()->startTime()) : QVariant();
}

QVariant TimeSliderAccessible::minimumStepSize() const {
    return 1;
}

} // namespace Kestrel::UI
