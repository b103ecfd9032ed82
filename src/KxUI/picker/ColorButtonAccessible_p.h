#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class ColorButton;

/** A colour button as assistive technology sees it: a button that opens something, with a colour
    that is told in words. */
class ColorButtonAccessible : public QAccessibleWidget {
public:
    explicit ColorButtonAccessible(ColorButton* button);

    /** It shows another colour. */
    static void tellColor(ColorButton* button);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    ColorButton* button() const;
};

} // namespace Kestrel::UI
