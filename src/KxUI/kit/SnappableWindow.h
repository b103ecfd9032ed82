#pragma once

#include <KxUI/Export.h>

#include <QPoint>
#include <QRect>
#include <QVector>

#include <memory>

class QEvent;
class QWidget;

namespace Kestrel::UI {

class SnappableWindowPrivate;

/** Makes a top-level window settle against the edges of the screens and of the other snappable
    windows when the user lets go of it near them.

    A mixin beside a QWidget class: construct it with the widget and hand it the widget's events
    through `snapEvent`. Only a move by the window's own frame snaps; positions set by the program
    stay exactly as they were set. Where the window manager keeps frame events to itself (X11), it
    does its own snapping and this one stays out of its way. Interface thread. */
class KXUI_EXPORT SnappableWindow {
public:
    /** `window` is borrowed and must be the object this is mixed into. With null nothing snaps. */
    explicit SnappableWindow(QWidget* window);
    virtual ~SnappableWindow();
    SnappableWindow(const SnappableWindow&) = delete;
    SnappableWindow& operator=(const SnappableWindow&) = delete;

    /** How near an edge must be to be snapped to, in pixels; 0 turns snapping off. Initially 10. */
    int snapDistance() const;
    void setSnapDistance(int pixels);

    /** Moves the window to the edges within the snap distance, now. Returns whether it moved. A
        hidden, maximized or full-screen window stays. */
    bool snap();

    /** Where `window` settles: each axis by itself takes the smallest move within `distance` that
        brings an edge onto the inside of one of `areas`, or onto the edge of one of `neighbours`
        that it lies beside. */
    static QPoint snappedPosition(const QRect& window, const QVector<QRect>& areas,
                                  const QVector<QRect>& neighbours, int distance);

protected:
    /** To be called from the widget's `event`, which goes on with every event as before. */
    void snapEvent(const QEvent* event);

private:
    const std::unique_ptr<SnappableWindowPrivate> d;
};

} // namespace Kestrel::UI
