#pragma once

#include <KxUI/curveedit/CurveHistogram.h>
#include <KxUI/curveedit/CurvePlot_p.h>

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>
#include <QVector>

class QPainter;

namespace Kestrel::UI {

/** A line of the grid. */
struct CurveGridLine {
    double at = 0; ///< in pixels of the widget
    QString label;
    bool major = true;

    friend bool operator==(const CurveGridLine& a, const CurveGridLine& b) {
        return a.at == b.at && a.label == b.label && a.major == b.major;
    }
};

/** The grid, and which of its lines mean something. */
struct CurveGrid {
    QVector<CurveGridLine> x;
    QVector<CurveGridLine> y;
    bool identity = false; ///< the line where nothing changes is drawn, too

    friend bool operator==(const CurveGrid& a, const CurveGrid& b) {
        return a.identity == b.identity && a.x == b.x && a.y == b.y;
    }
};

/** What lies behind the curves and does not change while they are edited: ground, histogram, grid,
    the frame that tells of the focus. A picture that is drawn anew when something of it becomes another one. */
class CurveGround {
public:
    /** All that the picture depends on. */
    struct Key {
        QSize size; ///< in pixels of the widget
        double ratio = 1.0;
        CurvePlot plot;
        CurveGrid grid;
        QColor base; ///< the ground
        QColor ink;
        QColor focus; ///< of the frame around a view that has it; invalid without
        QFont font;
        int histogram = 0; ///< counts the histograms that were set
    };

    /** In pixels of the device, opaque; `Format_RGB32`. */
    const QImage& picture(const Key& key, const QVector<CurveHistogram>& histogram);

private:
    static bool isSame(const Key& a, const Key& b);

    Key m_key;
    QImage m_picture;
};

/** The same colour, so much of it (0 to 1). */
QColor faint(QColor color, double alpha);

} // namespace Kestrel::UI
