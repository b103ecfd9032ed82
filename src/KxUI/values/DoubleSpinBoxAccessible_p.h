#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class DoubleSpinBox;

/** A number field as assistive technology sees it: its values are those of the host, its text is
    what is shown. Setting the value is an edit of the user. */
class DoubleSpinBoxAccessible : public RangeAccessible<DoubleSpinBox> {
public:
    explicit DoubleSpinBoxAccessible(DoubleSpinBox* box);

    QAccessible::State state() const override;
    /** The line edit is a part of the field. */
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int index) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    /** In one edit, clamped to the range. */
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumStepSize() const override;

protected:
    /** With the reason why it can not be read. */
    QString valueText() const override;
    QString standardName() const override;

private:
    DoubleSpinBox* box() const { return widgetAs<DoubleSpinBox>(); }
};

} // namespace Kestrel::UI
