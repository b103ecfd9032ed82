#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class DoubleSpinBox;

/** A number field as assistive technology sees it: its values are those of the host, its text is
    what is shown. Setting the value is an edit of the user. */
class DoubleSpinBoxAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit DoubleSpinBoxAccessible(DoubleSpinBox* box);

    /** Makes Qt create this interface for number fields and classes derived from them. */
    static void install();

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    /** The line edit is a part of the field. */
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int index) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    /** In one edit, clamped to the range. */
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    DoubleSpinBox* box() const;
};

} // namespace Kestrel::UI
