#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class LogSlider;

/** A logarithmic slider as assistive technology sees it: its values are the real ones. Before a
    range was set they are the positions of a plain slider. */
class LogSliderAccessible : public ValueAccessible {
public:
    explicit LogSliderAccessible(LogSlider* slider);

    QVariant currentValue() const override;
    /** Goes to the nearest position, so that a value plus a step gets there. */
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    /** From the current value to the next. */
    QVariant minimumStepSize() const override;

protected:
    QString valueText() const override;

private:
    LogSlider* slider() const;
    QVariant valueAt(int position) const;
};

} // namespace Kestrel::UI
