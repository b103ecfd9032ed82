#pragma once

#include <QAccessibleWidget>

namespace Kestrel::UI {

class ColorWheel;

/** A colour wheel as assistive technology sees it: a colour chooser named "Colour wheel" unless the
    host names it, whose value is the colour in words. */
class ColorWheelAccessible : public QAccessibleWidget {
public:
    explicit ColorWheelAccessible(ColorWheel* wheel);

    /** Makes Qt create this interface for colour wheels and classes derived from them. */
    static void install();

    QString text(QAccessible::Text kind) const override;
};

} // namespace Kestrel::UI
