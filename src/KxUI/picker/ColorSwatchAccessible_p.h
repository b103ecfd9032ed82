#pragma once

#include <KxUI/kit/ValueAccessible_p.h>

namespace Kestrel::UI {

class ColorSwatch;

/** A swatch as assistive technology sees it: a colour, told in words, that can be pressed, copied
    and pasted over. */
class ColorSwatchAccessible : public QAccessibleWidget {
public:
    explicit ColorSwatchAccessible(ColorSwatch* swatch);

    /** It shows another colour. */
    static void tellColor(ColorSwatch* swatch);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    QString localizedActionName(const QString& name) const override;
    void doAction(const QString& name) override;

private:
    ColorSwatch* swatch() const;
};

} // namespace Kestrel::UI
