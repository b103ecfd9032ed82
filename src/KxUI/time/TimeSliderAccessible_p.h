#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class TimeSlider;

/** A time slider as assistive technology sees it: a slider named "Timeline" unless the host names
   it, whose value is the current time in the notation it shows, settable within the clip. */
class TimeSliderAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit TimeSliderAccessible(TimeSlider* slider);

    /** Makes Qt create this interface for time sliders and classes derived from them. */
    static void install();

    QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    TimeSlider* slider() const;
};

} // namespace Kestrel::UI
