#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

/** A scope as assistive technology sees it: a chart that is named by its kind, and whose value is what
    the cursor is on, in words. */
class ScopeAccessible : public ValueAccessible {
public:
    explicit ScopeAccessible(QWidget* view);

    /** Makes Qt create this interface for scopes. */
    static void install();

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override { return {}; }
    QVariant minimumValue() const override { return {}; }
    QVariant minimumStepSize() const override { return {}; }

protected:
    QString valueText() const override;
    QString standardName() const override;
};

} // namespace Kestrel::UI
