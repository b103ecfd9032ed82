#pragma once

#include <KxUI/curveedit/CurveScene_p.h>

#include <QPointF>
#include <QRectF>

#include <vector>

namespace Kestrel::UI {

/** Knots that move together, of one curve or several: where they are at the beginning, and how far
    order, gaps and limits let them go. In the curves' numbers. */
class CurveGroup {
public:
    using Moves = std::vector<CurveModel::Move>;

    /** What is selected of the curves that can be edited. */
    static CurveGroup selected(const CurveScene& scene);
    /** One knot. */
    static CurveGroup of(const CurveScene& scene, int curve, int knot);

    int count() const { return int(m_items.size()); }
    bool isEmpty() const { return m_items.empty(); }
    bool holds(int curve, int knot) const;
    /** Around them all: the least and the greatest of both coordinates. */
    QPointF low() const;
    QPointF high() const;

    /** Whether the curves still have as many knots as at the beginning. */
    bool isPresent(const CurveScene& scene) const;

    /** The way nearest to `way` that all of them can go; none in a direction where that is none. On
        a grid the knot at `grip` comes to lie on it. */
    QPointF limitedWay(const QPointF& way, const QPointF& grip) const;
    Moves moved(const QPointF& way) const;
    /** Puts a knot that went the whole `way` to the very place that was meant, which its start and the
        way together may miss by rounding. */
    void meet(Moves& moves, int curve, int knot, const QPointF& way, const QPointF& place) const;
    /** Parts what rounding has brought to one place, by the least there is. */
    void keepApart(Moves& moves) const;

    /** The factors nearest to `factors` by which their distances from a point may grow; in x they
        keep their order, in y they may be turned upside down. */
    QPointF limitedScale(const QPointF& about, const QPointF& factors) const;
    Moves scaled(const QPointF& about, const QPointF& factors) const;

private:
    struct Item {
        CurveModel::Move start;
        /** What the limits, and neighbours that stay, leave it. */
        double lowX;
        double highX;
        double lowY;
        double highY;
        /** How near the one before it in the group, which is its neighbour, may come; 0 for others,
            as in `before`. */
        double gap = 0;
        double before = 0; ///< how far that one is away
    };
    struct Count {
        int curve;
        int knots;
    };

    void add(const CurveScene& scene, int curve, const std::vector<int>& knots);

    std::vector<Item> m_items;
    std::vector<Count> m_counts;
    bool m_canMoveX = true;
    double m_stepX = 0;
};

/** The frame around a group on the screen, by whose grips it is scaled. */
struct CurveFrame {
    /** From the upper left one clockwise. */
    static constexpr int Grips = 8;
    static constexpr double Reach = 8;
    /** Pixels between the outermost knots and the frame. */
    static constexpr double Margin = 10;

    QRectF rect;

    /** A null rectangle where there is none to show: fewer than two knots, or not wanted. */
    static CurveFrame of(const CurveScene& scene);

    bool isNull() const { return rect.isNull(); }
    QPointF grip(int index) const;
    /** -1 beside all of them. */
    int gripAt(const QPointF& position) const;
    /** On which sides a grip is: -1 left or below, 1 right or above, 0 neither. */
    static QPointF side(int index);
};

} // namespace Kestrel::UI
