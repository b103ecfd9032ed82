#pragma once

#include <QPoint>
#include <QRect>
#include <QVector>

namespace Kestrel::UI {

/** What a drag along a strip of tabs looks at, in coordinates of the strip. */
struct StripGeometry {
    QRect titleBar;
    QVector<QRect> tabs;
};

/** A drag along a strip, from the press on. Told of positions, it answers what to do; it does
    nothing itself. */
class StripDrag {
public:
    enum class Command {
        None,
        Begin,   ///< the tab under the press is taken hold of
        Reorder, ///< the tab goes to `index`; confirmed by `moved`
        TearOff, ///< tab `index` leaves the strip; the drag has ended here
    };
    struct Step {
        Command command = Command::None;
        int index = -1;
    };

    /** The button went down, with the strip as it was before: making the pressed tab current may
        scroll another one under the mouse. */
    void press(const QPoint& position, const StripGeometry& strip);
    /** The mouse moved. Without the left button, the release was lost: all is forgotten. */
    Step move(const QPoint& position, bool leftHeld, int startDistance, const StripGeometry& strip);
    /** The tab arrived where `Reorder` asked it to go. */
    void moved(int index) { m_index = index; }
    void end();

    bool isDragging() const { return m_index >= 0; }
    int index() const { return m_index; } ///< of the dragged tab, -1 without a drag
    int left() const { return m_left; }   ///< of the dragged tab
    QPoint pressPosition() const { return m_press; }

private:
    QPoint m_press = QPoint(-1, 0); // x = -1: no press
    int m_pressedIndex = -1;
    int m_index = -1;
    int m_left = 0;
    int m_grabOffset = 0;
};

} // namespace Kestrel::UI
