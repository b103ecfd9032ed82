#pragma once

#include <KxUI/Export.h>

#include <QPoint>
#include <QRect>
#include <QVector>

class QWidget;

namespace Kestrel::UI {

/** Where top-level windows may stand. All rectangles are frame rectangles in desktop coordinates.
    The functions on rectangles may be called from any thread, the others on the interface thread.
 */
class KXUI_EXPORT WindowPlacement {
public:
    /** The available area of every screen, the primary screen first. */
    static QVector<QRect> availableAreas();

    /** `window` itself while it meets one of `areas` by at least 32 x 32 pixels (or all of itself,
        when it is smaller); else moved, and shrunk where it must be, into the first area. Without
        areas it is returned as it is. */
    static QRect pulledBack(const QRect& window, const QVector<QRect>& areas);

    /** The position nearest to that of `window`, going down and to the right in steps of 24 pixels
        and then beside them, at which it hides none of `others` wholly and does not meet `avoid` at
        all (a null rectangle: nothing to avoid), and which lies inside the one of `areas` that
        holds the window's centre. When there is none, the position it has. */
    static QPoint positionAside(const QRect& window, const QVector<QRect>& others,
                                const QRect& avoid, const QVector<QRect>& areas);

    /** Moves `window`, only if needed, back onto a present screen and so that it does not obscure
        the other visible windows of the application, and does not cover `avoid` (may be null).
        Returns whether it was moved; null is not. */
    static bool moveAside(QWidget* window, const QWidget* avoid = nullptr);
};

} // namespace Kestrel::UI
