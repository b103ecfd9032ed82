#pragma once

#include <KxUI/values/SliderScale_p.h>

#include <QRectF>
#include <QString>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** What a linear slider is laid out by. Lengths are logical pixels: "along" the groove, or "across"
    it. */
struct SliderRoom {
    QSizeF size;
    Qt::Orientation orientation = Qt::Horizontal;
    bool forward = true;      ///< values grow rightwards or downwards
    bool mirrored = false;    ///< labels stand on the left of a vertical groove
    double handleAlong = 0.0; ///< its length
    double endAlong = 0.0;    ///< from an end to the middle of a handle that stands there
    double thickness = 0.0;   ///< of groove and handle across
    bool hasTicks = false;
    bool hasLabels = false;
    double labelHeight = 0.0;
    std::function<double(const QString&)> labelWidth = {};
    std::function<QString(double value, int digits)> labelText = {};
};

/** The values that a linear slider is laid out for. */
struct SliderRange {
    double minimum = 0.0;
    double maximum = 1.0;
    double exponent = 1.0;
    double grid = 0.0;
};

/** A label as it is drawn, centred in its room. */
struct SliderLabel {
    QRectF room;
    QString text;
};

/** Where the parts of a linear slider are, in the coordinates of the widget: across, groove, ticks
    and labels follow each other and stand in the middle of the widget together. */
struct SliderGeometry {
    SliderScale scale; ///< of the middle of the handle
    Qt::Orientation orientation = Qt::Horizontal;
    QRectF slider; ///< groove and handle
    double handleAlong = 0.0;
    double tickStart = 0.0;     ///< across
    double tickDirection = 1.0; ///< 1 or -1
    double across = 0.0;        ///< what all of it takes
    SliderTicks ticks;
    std::vector<SliderLabel> labels;

    static SliderGeometry of(const SliderRange& range, const SliderRoom& room);

    bool isHorizontal() const { return orientation == Qt::Horizontal; }
    double along(const QPointF& point) const { return isHorizontal() ? point.x() : point.y(); }
    /** The handle where it stands for a value. */
    QRectF handle(double value) const;
    /** A tick from the groove outwards, `length` pixels long. */
    QRectF tick(const SliderTick& tick) const;

private:
    static constexpr double TickGap = 1.0;
    static constexpr double TickLength = 3.0;
    static constexpr double LongTickLength = 5.0;
    static constexpr double LabelGap = 1.0;
    static constexpr double LongTickDistance = 40.0;
    static constexpr double LeastLabelGap = 6.0;

    void planAlong(const SliderRange& range, const SliderRoom& room);
    void planAcross(const SliderRoom& room);
    double widestLabel(const SliderRoom& room) const;
};

} // namespace Kestrel::UI
