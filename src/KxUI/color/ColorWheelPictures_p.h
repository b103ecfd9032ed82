#pragma once

#include <KxUI/color/ColorWheelGeometry_p.h>

#include <QColor>
#include <QImage>
#include <QRect>

namespace Kestrel::UI {

/** A picture and the pixels of the widget's device that it covers. */
struct ColorWheelPicture {
    QImage image;
    QRect area;
};

/** Everything but the square and the markers: the disc at full value and the rings, around which a
    line of the colour `outline` is drawn. Only what lies within `size` is computed. */
ColorWheelPicture drawColorWheel(const ColorWheelGeometry& geometry, const QSizeF& size,
                                 double deviceRatio, const QColor& outline,
                                 const ColorWheel::ColorTransform& transform);

/** The square of saturation and value for a hue. */
ColorWheelPicture drawColorSquare(const ColorWheelGeometry& geometry, const QSizeF& size,
                                  double deviceRatio, float hue,
                                  const ColorWheel::ColorTransform& transform);

/** The colour of a marker as the screen shows it. */
QColor shownColor(const Hsv& color, const ColorWheel::ColorTransform& transform);

/** The pictures of a wheel, drawn again only when what they show has changed. */
class ColorWheelPictures {
public:
    const ColorWheelPicture& wheel(const ColorWheelGeometry& geometry, const QSizeF& size,
                                   double deviceRatio, const QColor& outline,
                                   const ColorWheel::ColorTransform& transform);
    const ColorWheelPicture& square(const ColorWheelGeometry& geometry, const QSizeF& size,
                                    double deviceRatio, float hue,
                                    const ColorWheel::ColorTransform& transform);

    /** The transform does something else now. */
    void clear() { *this = ColorWheelPictures(); }

private:
    struct Key {
        ColorWheelGeometry geometry;
        QSizeF size;
        double deviceRatio = 0.0;
        QRgb color = 0;
        float hue = 0.0F;

        bool operator==(const Key& other) const;
    };

    Key m_wheelKey;
    Key m_squareKey;
    ColorWheelPicture m_wheel;
    ColorWheelPicture m_square;
};

} // namespace Kestrel::UI
