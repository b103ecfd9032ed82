#pragma once

#include <KxUI/curveedit/CurveScene_p.h>

#include <QColor>
#include <QFont>
#include <QPolygonF>
#include <QString>

#include <vector>

class QPainter;

namespace Kestrel::UI {

/** A part of a line of text. */
struct CurveWord {
    QString text;
    QColor color;
};

/** Paints what lies over the lines of a curve view and belongs to its moment: handles, marks,
    frames, and what it says. In pixels of the widget. */
class CurveOverlays {
public:
    CurveOverlays(QPainter& painter, const CurveScene& scene, const QPalette& palette);

    /** Handles of the selected knots, or how their line goes where it cannot be changed. */
    void paintHandles(int curve, const std::vector<int>& selected, const QColor& color);
    /** A line across the plot at an x; dashed, or with a head at its top. */
    void paintMarker(double x);
    void paintPlayhead(double x);
    /** Where the curve is at an x. */
    void paintDot(double x, double y, const QColor& color);
    /** What a drag snapped to, with its name. */
    void paintSnap(const QPolygonF& line, const QString& name);
    void paintBand(const QRectF& band);
    /** The frame around what is selected, and its grips. */
    void paintFrame(const QRectF& frame, const std::vector<QPointF>& grips);
    /** At the lower right, where grading curves seldom go; `line` 0 is the lowest. */
    void paintText(const std::vector<CurveWord>& words, const QFont& font, int line);
    /** How wide that would be. */
    double widthOf(const std::vector<CurveWord>& words, const QFont& font) const;

private:
    QPen pen(const QColor& color, double width, Qt::PenStyle style = Qt::SolidLine) const;

    QPainter& m_painter;
    const CurveScene& m_scene;
    const QPalette& m_palette;
    const QColor m_ink;
    const QColor m_base;
};

} // namespace Kestrel::UI
