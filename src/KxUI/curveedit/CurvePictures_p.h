#pragma once

#include <KxUI/curveedit/CurveGround_p.h>
#include <KxUI/curveedit/CurveLine_p.h>
#include <KxUI/curveedit/CurveScene_p.h>

#include <QImage>
#include <QRegion>

#include <array>
#include <limits>
#include <map>
#include <tuple>
#include <vector>

namespace Kestrel::UI {

/** How a knot looks. */
enum class KnotLook {
    Plain,
    Hovered,  ///< larger
    Selected, ///< larger and filled
    Gone      ///< a ring where it was pulled out of the view
};

/** Pictures of knots, each made once for its look, its colours, the scale, and the quarter of a
    pixel that it lies on. */
class KnotPictures {
public:
    static constexpr double Radius = 4.0; ///< of a plain one, in pixels of the widget

    /** Draws one in the middle of `at`, pixels of the device. */
    void draw(QPainter& painter, const QPointF& at, KnotLook look, const QColor& color);

    /** The scale and the colours that the pictures are for; drops those for others. */
    void prepare(double ratio, const QColor& ink, const QColor& base);

private:
    struct Picture {
        QImage image;
        QPoint middle;
    };
    using Key = std::tuple<KnotLook, QRgb, int, int>;

    Picture make(KnotLook look, const QColor& color, const QPointF& phase) const;

    double m_ratio = 0.0;
    QRgb m_ink = 0;
    QRgb m_base = 0;
    std::map<Key, Picture> m_pictures;
};

/** A curve as it is drawn. */
struct CurveLook {
    int curve = 0;
    QColor color;
    double width = 2.0;   ///< of its line, in pixels of the widget
    double opacity = 1.0; ///< of its line
    bool hasKnots = true; ///< which are shown
    int hovered = -1;     ///< the knot under the mouse
    /** The selected knots; borrowed. */
    const std::vector<int>* selected = nullptr;

    /** Whether the lines look the same. */
    friend bool operator==(const CurveLook& a, const CurveLook& b) {
        return a.curve == b.curve && a.color == b.color && a.width == b.width &&
               a.opacity == b.opacity && a.hasKnots == b.hasKnots;
    }
};

/** Ground, lines and knots of a view, drawn in steps that keep what they can: the ground while
    nothing behind the curves changes, and what is seen of each curve while that stays. */
class CurvePictures {
public:
    /** The curve is another one, which shows within `changed` (pixels of the widget) and nowhere
        else. */
    void forget(int curve, const QRect& changed);
    /** All are. */
    void forgetAll();

    /** Draws ground and lines within `exposed` (pixels of the widget), the curves in this order. */
    void paintLines(QPainter& painter, const CurveGround::Key& ground,
                    const QVector<CurveHistogram>& histogram, const CurveScene& scene,
                    const std::vector<CurveLook>& curves, const QRect& exposed);

    /** Draws the knots of those curves, selected ones over the others. */
    void paintKnots(QPainter& painter, const CurveGround::Key& ground, const CurveScene& scene,
                    const std::vector<CurveLook>& curves, const QRect& exposed);

    /** Draws one knot that no curve has. */
    void paintLoneKnot(QPainter& painter, const CurveGround::Key& ground, const QPointF& at,
                       KnotLook look, const QColor& color);

private:
    struct Rows {
        int first = std::numeric_limits<int>::max();
        int end = 0;
    };
    struct Kept {
        CurveLine line;
        bool valid = false;
        QRect stale; ///< where it is another one meanwhile, in pixels of the device
    };

    const CurveLine& line(const CurveModel& model, int curve, const CurvePlot& plot, double ratio,
                          int width);
    /** Takes the lines off the canvas again. */
    void uncover(const QImage& behind, const QRect& pixels);
    void noteInk(const CurveLook& look, const CurveLine& line, double ratio, const QRect& pixels,
                 bool hasStrip);
    void compose(const CurveGround::Key& ground, const QImage& behind, const CurveScene& scene,
                 const std::vector<CurveLook>& curves, const QRect& pixels);
    void paintDensity(const CurveLook& look, const CurveLine& line, const CurveGround::Key& ground,
                      const QRect& pixels);
    void paintKnotsOf(QPainter& painter, const CurveGround::Key& ground, const CurveScene& scene,
                      const CurveLook& look, const QRectF& exposed);

    CurveGround m_ground;
    QImage m_canvas;         ///< the ground with the lines on it
    QRegion m_drawn;         ///< the part of it that is still right
    QRegion m_covered;       ///< the part that has the ground, perhaps under lines of before
    std::vector<Rows> m_ink; ///< where these are, by blocks of columns
    qint64 m_behind = 0;     ///< the ground that it was drawn on
    std::vector<CurveLook> m_looks;
    KnotPictures m_knots;
    CurvePlot m_plot; ///< what the lines are for, with the ones below
    double m_ratio = 0.0;
    int m_width = 0;
    std::vector<Kept> m_lines;
};

} // namespace Kestrel::UI
