#pragma once

#include <KxUI/Export.h>

#include <QRect>

namespace Kestrel::UI {

/** What a WidgetTracker knows of a widget. Its layout in memory is frozen. */
class KXUI_EXPORT TrackedWidget {
public:
    /** The tolerance of hasMoved() where none is given, in pixels. */
    static constexpr int DefaultTolerance = 10;

    /** Nothing known: an empty rectangle that is not saved. */
    TrackedWidget() = default;
    /** `rect` is the frame rectangle at registration; `save` also stores the place in the settings;
        `tolerance` in pixels. */
    TrackedWidget(const QRect& rect, bool save, int tolerance = DefaultTolerance)
        : m_rect(rect)
        , m_save(save)
        , m_tolerance(tolerance) {}

    /** Deleted: a pointer given for `save` would silently mean true. */
    TrackedWidget(const QRect& rect, const void* save, int tolerance = 10) = delete;

    /** The frame rectangle at registration, in desktop coordinates. */
    QRect rect() const { return m_rect; }
    /** Whether the place is stored in the settings, too. */
    bool save() const { return m_save; }
    /** By how many pixels hasMoved() shifts the rectangle. */
    int tolerance() const { return m_tolerance; }

    /** Whether `rect` does not fit into rect() shifted right and down by tolerance() pixels. The
        rectangle is shifted, not made larger: so a widget that stayed where it was counts as moved,
        unless the tolerance is 0. Hosts rely on that answer. */
    bool hasMoved(const QRect& rect) const {
        return !m_rect.translated(m_tolerance, m_tolerance).contains(rect);
    }

private:
    QRect m_rect;
    bool m_save = false;
    int m_tolerance = DefaultTolerance;
};

} // namespace Kestrel::UI
