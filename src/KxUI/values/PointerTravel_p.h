#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

namespace Kestrel::UI {

/** Where a drag goes on when its pointer comes to the edge of the screen. */
class PointerTravel {
public:
    /** Pixels a tick for a pointer that is held at an edge: at most so many. */
    static constexpr double FastestTick = 8.0;
    static constexpr int TickMilliseconds = 100;

    /** The place at the other edge of the screen for a pointer at one; null elsewhere. */
    static std::optional<QPoint> beyond(const QPoint& at, const QRect& screen,
                                        Qt::Orientation axis);

    /** A drag begins: whether the pointer can be put elsewhere is found out anew. */
    void begin() { *this = PointerTravel(); }
    /** The pointer moved so far, which is how fast it goes on at an edge. */
    void moved(double pixels) { m_speed = pixels; }
    /** Puts the pointer there; false where the window system does not do that. */
    bool jump(const QPoint& to);
    /** What a tick at the edge counts. */
    double tick() const;

private:
    bool m_canJump = true;
    double m_speed = 0.0;
};

} // namespace Kestrel::UI
