#pragma once

#include <KxUI/color/ColorWheelDrag_p.h>
#include <KxUI/color/ColorWheelPictures_p.h>
#include <KxUI/kit/EditBracket_p.h>

class QKeyEvent;
class QMouseEvent;
class QPainter;
class QRegion;

namespace Kestrel::UI {

/** What an edit of a colour wheel changes. */
struct ColorWheelColor {
    Hsv color;
    float ringValue = 1.0F;
};

inline bool operator==(const ColorWheelColor& a, const ColorWheelColor& b) {
    return a.color == b.color && a.ringValue == b.ringValue;
}

/** What a colour wheel shows and the state of its mouse; the steps that its events consist of. */
class ColorWheelPrivate {
public:
    ColorWheelPrivate(ColorWheel* wheel, ColorWheel::ColorTransform transform,
                      ColorWheel::DisplayMode mode);

    ColorWheelGeometry geometry() const;
    ColorWheelScene scene() const;
    ColorWheelInput inputOf(const QMouseEvent& event) const;
    /** A position in the widget from its lower left corner, y upwards. */
    QPointF upwards(const QPointF& position) const;

    /** Whether an event is done with: the bracket took it, or the wheel is gone. */
    bool takes(QEvent* event);

    /** Whether a key is the wheel's, before a shortcut's. */
    bool isOwnKey(const QKeyEvent& event) const;

    /** What Home and a double click go back to. */
    Hsv neutralColor() const;

    /** These tell of what has changed, so the wheel may be gone afterwards. setColor() is for
        hosts. */
    void setColor(const Hsv& color, float ringValue);
    void showColor(const Hsv& color, float ringValue);
    void showView(float zoom, const QPointF& pan);
    void execute(const ColorWheelCommands& commands);
    /** What the drag's machine answers; the edit ends with the drag. */
    void drive(const ColorWheelCommands& commands);

    /** A change that is complete by itself. None while a drag is under way, whose signals would no
        longer come in pairs. */
    void editOnce(const Hsv& color);
    void editOnce(const Hsv& color, float ringValue);
    /** The same, and an edit by itself. */
    void editWhole(const Hsv& color);

    void zoomAbout(const QPointF& point, double factor);

    void paintPictures(QPainter& painter, const ColorWheelGeometry& geometry,
                       const QRegion& region);
    void paintMarkers(QPainter& painter, const ColorWheelGeometry& geometry) const;
    void paintFocus(QPainter& painter) const;

    Hsv color;
    float ringValue = 1.0F;
    float zoom = 1.0F;
    QPointF pan;
    float interactionScale = 0.1F;
    float hueRotation = 0.0F;
    ColorWheel::DisplayMode displayMode;
    ColorWheel::InteractionMode interactionMode = ColorWheel::AbsoluteInteraction;
    bool zoomEnabled;
    const bool embedded;
    ColorWheel::ColorTransform transform;
    ColorWheel::ColorSource source;
    ColorWheelDrag drag;
    EditBracket<ColorWheel, ColorWheelColor> bracket;
    bool menuSuppressed = false; ///< the right button took a drag back; that is all it meant
    ColorWheelPictures pictures;

private:
    QRegion markerRegion(const Hsv& shown) const;
    void tell(const ColorWheelCommand& command);
    float ringAfter(const Hsv& edited) const;
    void tellColor(const ColorWheelCommand& command);
    void showEdited(const ColorWheelColor& shown);

    ColorWheel* m_wheel;
    bool m_restoring = false; ///< an edit is being taken back
};

} // namespace Kestrel::UI
