#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

class FrameSlider;

namespace Kestrel::UI {

/** A frame slider as assistive technology sees it: a slider named "Frame" unless the host names it,
    told in the notation of its field. Setting the value is an edit of the user. */
class FrameSliderAccessible : public RangeAccessible<FrameSlider> {
public:
    explicit FrameSliderAccessible(FrameSlider* slider);

    QVariant currentValue() const override;
    /** Limited to the range; what is no number is ignored. */
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumStepSize() const override;

protected:
    QString valueText() const override;
    QString standardName() const override;

private:
    FrameSlider* slider() const;
};

} // namespace Kestrel::UI
