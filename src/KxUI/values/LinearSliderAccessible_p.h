#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class LinearSlider;

/** A linear slider as assistive technology sees it: its value is the real one, and setting that is
    an edit of the user. */
class LinearSliderAccessible : public RangeAccessible<LinearSlider> {
public:
    explicit LinearSliderAccessible(LinearSlider* slider);

    QVariant currentValue() const override;
    /** Limited to the range; what is no finite number is ignored. */
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumStepSize() const override;

protected:
    QString valueText() const override;

private:
    LinearSlider* slider() const { return widgetAs<LinearSlider>(); }
};

} // namespace Kestrel::UI
