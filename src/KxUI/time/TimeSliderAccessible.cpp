#include <KxUI/time/TimeSliderAccessible_p.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

QAccessibleInterface* create(const QString& className, QObject* object) {
    if (className == QLatin1String("Kestrel::UI::TimeSlider")) {
        if (auto* slider = qobject_cast<TimeSlider*>(object))
            return new TimeSliderAccessible(slider);
    }
    return nullptr;
}

QVariant valueOf(Base::Time time) {
    return time == Base::InvalidTime ? QVariant() : QVariant(qlonglong{time});
}

} // namespace

TimeSliderAccessible::TimeSliderAccessible(TimeSlider* slider)
    : QAccessibleWidget(slider, QAccessible::Slider) {}

void TimeSliderAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}

TimeSlider* TimeSliderAccessible::slider() const {
    return static_cast<TimeSlider*>(object());
}

QString TimeSliderAccessible::text(QAccessible::Text kind) const {
    const QString text = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && text.isEmpty())
        return TimeSlider::tr("Timeline");
    if (kind == QAccessible::Value && slider()->model() && slider()->formatter())
        return slider()->formatter()->formatTime(slider()->model()->currentTime());
    return text;
}

void* TimeSliderAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
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
