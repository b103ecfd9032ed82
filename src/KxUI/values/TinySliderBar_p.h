#pragma once

#include <QImage>
#include <QRectF>

class QPainter;
class QPalette;

namespace Kestrel::UI {

/** The picture of the pointer, drawn again only when it looks otherwise: smooth edges cost more than
    all the rest of a tiny slider. */
class TinySliderPointer {
public:
    /** Around its middle, which is that of the picture. */
    const QImage& image(const QColor& color, Qt::Orientation orientation, int beyond,
                        double deviceRatio);

private:
    QImage m_image;
    QRgb m_color = 0;
    Qt::Orientation m_orientation = Qt::Horizontal;
    int m_beyond = 0;
    double m_ratio = 0.0;
};

/** The picture of a tiny slider: a line, a part of which is filled, and a pointer. */
struct TinySliderBar {
    static constexpr double PointerSize = 7.0;
    static constexpr double LineWidth = 3.0;
    static constexpr double Inset = 1.0; ///< of the line at its ends

    QRectF area; ///< in logical pixels, as all of it
    Qt::Orientation orientation = Qt::Horizontal;
    double from = 0.0; ///< where the filled part begins, along the line
    double to = 0.0;   ///< where it ends and the pointer stands
    int beyond = 0;    ///< -1 or 1: the value lies beyond that end of the line
    bool isActive = false;
    bool hasFocus = false;

    void paint(QPainter& painter, const QPalette& palette, TinySliderPointer& pointer) const;

private:
    void paintFrame(QPainter& painter, const QColor& color, double ratio) const;
};

} // namespace Kestrel::UI
