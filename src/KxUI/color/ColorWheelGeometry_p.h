#pragma once

#include <KxUI/color/ColorWheel.h>

#include <QLineF>
#include <QRectF>

namespace Kestrel::UI {

/** A colour of the wheel. */
struct Hsv {
    float hue = 0.0F;
    float saturation = 0.0F;
    float value = 1.0F;
};

inline bool operator==(const Hsv& a, const Hsv& b) {
    return a.hue == b.hue && a.saturation == b.saturation && a.value == b.value;
}

/** Into 0 up to but without 1, never a negative zero; 0 for what is not finite. */
float wrappedUnit(float x);

/** Into 0-1; 0 for what is not a number. */
float clampedUnit(double x);

/** Where everything is on a wheel. Points are relative to its centre, in pixels, y upwards. */
struct ColorWheelGeometry {
    ColorWheel::DisplayMode mode = ColorWheel::PlainWheel;
    QPointF centre;         ///< from the lower left corner of the widget, upwards
    double height = 0.0;    ///< of the widget
    double rotation = 0.0;  ///< of the hues, in radians
    double disc = 0.0;      ///< radius of the disc, or of what surrounds the square
    double outer = 0.0;     ///< radius of all but a value ring
    double ringInner = 0.0; ///< the ring of hues, or of values, around it
    double ringOuter = 0.0;
    double halfSquare = 0.0; ///< half a side of the square

    static ColorWheelGeometry of(const QSizeF& size, ColorWheel::DisplayMode mode, double zoom,
                                 const QPointF& pan, double hueRotation);

    /** False for a wheel that is too small to draw or pick anything. */
    bool isUsable() const;

    float hueAt(const QPointF& point) const;
    QPointF hueDirection(float hue) const;

    /** The value ring runs counterclockwise from 1 to 0, with its seam at the top. */
    static float ringValueAt(const QPointF& point);
    static QPointF ringDirection(float value);

    /** The marker of the colour on the disc or the square. */
    QPointF markerOf(const Hsv& color) const;
    /** The marker across the ring: of the value on a value ring, else of the hue. */
    QLineF ringMarkerOf(const Hsv& color, float ringValue) const;

    /** A point as the widget paints: from the upper left corner, y downwards. */
    QPointF toWidget(const QPointF& point) const;

    /** The square as the widget paints. */
    QRectF square() const;
};

bool operator==(const ColorWheelGeometry& a, const ColorWheelGeometry& b);

/** The pan that keeps what is at `fromMiddle` (pixels from the middle of the widget, y upwards)
    there when the radius of the disc changes. */
QPointF panForZoom(const QPointF& pan, const QPointF& fromMiddle, double oldDisc, double newDisc);

QPointF limitedPan(const QPointF& pan);
float limitedZoom(double zoom);

} // namespace Kestrel::UI
