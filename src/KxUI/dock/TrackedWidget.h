#pragma once

#include <KxUI/Export.h>

#include <QRect>

namespace Kestrel::UI {

/** What a WidgetTracker knows of a widget. Its layout in memory is frozen. */
class KXUI_EXPORT TrackedWidget {
public:
    /** What hasMoved() shifts by when nothing else is asked for, in pixels. */
    static constexpr int DefaultTolerance = 10;

    /** Nothing known: an empty rectangle that is not saved. */
    TrackedWidget() = default;
    /** `rect` is the frame rectangle at registration; `save` also stores the place in the settings;
        `tolerance` in pixels. */
    TrackedWidget(const QRect& rect, bool save, int tolerance = DefaultTolerance)
        : m_rect(rect)
        , m_save(save)
        , m_tolerance(tolerance) {}

    /** No pointer is a flag. */
    TrackedWidget(const QRect& rect, const void* save, int tolerance = 10) = delete;

    /** The frame rectangle at registration, in desktop coordinates. */
    QRect rect() const { return m_rect; }
    /** Whether the place is stored in the settings, too. */
    bool save() const { return m_save; }
    /** What hasMoved() shifts by, in pixels. */
    int tolerance() const { return m_tolerance; }

    /** Whether `rect` is not inside the stored rectangle shifted right and down by the tolerance.
        Shifted, not grown, since that is how hosts have always been answered: a widget that did not
        move at all counts as moved. */
    bool hasMoved(const QRect& rect) const {
        return !m_rect.translated(m_tolerance, m_tolerance).contains(rect);
    }

private:
    QRect m_rect;
    bool m_save = false;
    int m_tolerance = DefaultTolerance;
};

} // namespace Kestrel::UI
