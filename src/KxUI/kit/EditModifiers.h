#pragma once

#include <KxUI/Export.h>

#include <Qt>

namespace Kestrel::UI {

/** How much coarser or finer drags, wheels and keys count while modifiers are held; the same for
    every widget of the program. Interface thread. */
class KXUI_EXPORT EditModifiers {
public:
    /** 1 without modifiers, 10 with Shift, 0.1 with Control, 0.01 with both, unless set() changed
        that. Other modifiers do not count. */
    static double factor(Qt::KeyboardModifiers modifiers);

    /** For hosts with habits of their own: Shift counts `coarse` times, Control `fine` times, both
        together the square of `fine`. Numbers that are not positive and finite are ignored. */
    static void set(double coarse, double fine);
};

} // namespace Kestrel::UI
