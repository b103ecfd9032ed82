#pragma once

#include <KxUI/Export.h>

#include <QObject>

class QWidget;

namespace Kestrel::UI {

/** When the mouse wheel changes the value of a widget. A wheel that does not is left to whatever
    scrolls around the widget. Spell it `Kestrel::UI::WheelPolicy::Policy` in properties. */
class KXUI_EXPORT WheelPolicy {
    Q_GADGET

public:
    /** Other numbers are as `WheelWhenFocused`. */
    enum Policy {
        WheelWhenFocused = 0, ///< only while the widget, or a part of it, has the keyboard focus
        WheelAlways = 1,      ///< wherever the focus is
        WheelNever = 2        ///< not at all
    };
    Q_ENUM(Policy)

    /** Whether a wheel over the widget is the widget's now. False for null. */
    static bool takes(Policy policy, const QWidget* widget);
};

} // namespace Kestrel::UI
