#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class TimeSlider;

/** A time slider as assistive technology sees it: a slider named "Timeline" unless the host names
    it, whose value is the current time in the notation it shows, settable within the clip. */
class TimeSliderAccessible : public ValueAccessible {
public:
    explicit TimeSliderAccessible(TimeSlider* slider);

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

protected:
    QString valueText() const override;
    QString standardName() const override;

private:
    TimeSlider* slider() const;
};

} // namespace Kestrel::UI
