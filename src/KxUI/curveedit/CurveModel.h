#pragma once

#include <KxUI/Export.h>

#include <QByteArray>
#include <QColor>
#include <QObject>
#include <QPointF>
#include <QString>

#include <limits>
#include <vector>

class QPalette;

namespace Kestrel::UI {

/** Curves through knots as a `CurveView` shows and edits them: several curves, each with its knots
    sorted by x and a line through them. `CurvesModel` and `KeyCurveModel` are made of the curves of
    this library; a host that has keys of its own implements this.

    Indices outside of a count are never passed by a view; an implementation answers them with
    something harmless. Interface thread. */
class KXUI_EXPORT CurveModel : public QObject {
    Q_OBJECT

public:
    /** What can be done to a curve. */
    enum Ability {
        CanMoveX = 1,  ///< knots move in x, not in y alone
        CanAdd = 2,    ///< knots can be added
        CanRemove = 4, ///< knots can be taken away
        HasShapes = 8, ///< knots have a shape(), which setShape() changes
        HasSlopes = 16 ///< knots have slopes, which setSlopes() changes
    };
    /** Bits of Ability. */
    Q_DECLARE_FLAGS(Abilities, Ability)
    Q_FLAG(Abilities)

    /** A place that a curve goes through. A plain value, whose layout is frozen. */
    struct Knot {
        double x = 0;        ///< along the axis
        double y = 0;        ///< the line's value there
        double slopeIn = 0;  ///< dy/dx of the line where it arrives
        double slopeOut = 0; ///< and where it leaves
        /** How the line goes on to the next knot, as `KeyCurve::Shape`; 0 without `HasShapes`. */
        int shape = 0;
        bool selected = false; ///< by the user
        bool broken = false;   ///< whether the two slopes are apart
    };

    /** Where knots may be, and how many. A plain value, whose layout is frozen. Infinities are no
        limits. */
    struct Limits {
        double lowX = 0;  ///< the least x
        double highX = 1; ///< the greatest one
        double lowY = 0;  ///< the least y
        double highY = 1; ///< the greatest one
        /** What lies between two neighbours in x at least; with 0 they are still apart. */
        double gap = 0;
        /** Knots move to multiples of this in x, as keys to whole frames; 0: anywhere. */
        double stepX = 0;
        int fewestKnots = 0; ///< how many stay when knots are taken away
        /** How many there may be. */
        int mostKnots = std::numeric_limits<int>::max();
    };

    /** Where a knot goes. */
    struct Move {
        int curve = 0; ///< the index of its curve
        int knot = 0;  ///< its own
        double x = 0;  ///< its new place
        double y = 0;  ///< the same
    };

    /** What select() does to the knots that it names, and to the other ones of the curve. */
    enum SelectionMode {
        SelectOnly = 0,   ///< these and no other
        SelectAdd = 1,    ///< these, too
        SelectToggle = 2, ///< the other way round
        SelectRemove = 3  ///< not these
    };
    Q_ENUM(SelectionMode)

    explicit CurveModel(QObject* parent = nullptr);
    ~CurveModel() override;

    /** How many curves there are. */
    virtual int count() const = 0;
    /** What a curve is called, for the user. */
    virtual QString name(int curve) const = 0;
    /** What it is drawn in on such a palette; that of its text unless a model says otherwise. */
    virtual QColor color(int curve, const QPalette& palette) const;
    /** What can be done to a curve, by views as well as by calls from here on. */
    virtual Abilities abilities(int curve) const = 0;
    /** Where its knots may be. */
    virtual Limits limits(int curve) const = 0;

    /** How many knots a curve has. */
    virtual int knots(int curve) const = 0;
    /** The knot at `index`, counted from 0. */
    virtual Knot knot(int curve, int index) const = 0;
    /** Where `count` knots from `first` on lie: x and y of knot(), for many at once. What looks for
        knots under the mouse or draws thousands of them asks this. */
    virtual void places(int curve, int first, int count, QPointF* out) const;
    /** The indices of the selected knots, rising. */
    virtual std::vector<int> selectedKnots(int curve) const;
    /** The index of the first knot at or after `x`; knots() without one. Called for each movement
        of the mouse: a search in halves, not a walk. */
    virtual int firstKnotFrom(int curve, double x) const = 0;
    /** `count` values of the line, evenly spaced, both ends included. */
    virtual void sample(int curve, double from, double to, int count, double* out) const = 0;

    /** The least and the greatest value of the line, and of knots, in each of `count` parts of
        equal width. Reads places() and sample() unless a model knows a shorter way. */
    virtual void ranges(int curve, double from, double to, int count, double* low,
                        double* high) const;

    /** Moves knots: all of them, or none and false. Keeps the order of the knots, and so their
        indices. */
    virtual bool move(const std::vector<Move>& moves) = 0;
    /** Adds a knot, as near to the place as limits and neighbours let it. Its index, or -1 where
        there is no room. Selects nothing. */
    virtual int add(int curve, double x, double y) = 0;
    /** Adds a knot on the line, which changes the line as little as the model can: not at all, if
        it can. Its index, or -1. */
    virtual int addOnLine(int curve, double x) = 0;
    /** Takes knots away, all of them, or none and false. `knots` rises. Selects nothing. */
    virtual bool remove(int curve, const std::vector<int>& knots) = 0;
    /** Changes how the line goes on from each of these knots, which rise; false without
        `HasShapes`. */
    virtual bool setShape(int curve, const std::vector<int>& knots, int shape);
    /** Changes the slopes at a knot, and whether they are apart; false without `HasSlopes`. The
        pieces that get other slopes take the shape that has some. */
    virtual bool setSlopes(int curve, int knot, double in, double out, bool broken);
    /** Selects the knots first to last, both included, which are none where `last` is before
        `first`; nobody's edit. */
    virtual void select(int curve, int first, int last, SelectionMode mode) = 0;

    /** All of a curve as bytes, from which load() makes it again, to the last bit and with the
        selection. What an edit that is taken back, the clipboard and presets use; the models of
        this library write text: "(0, 0), (0.5, 0.6), (1, 1)". */
    virtual QByteArray save(int curve) const = 0;
    /** False, and the curve as it was, for bytes that are none. Limits do not count. */
    virtual bool load(int curve, const QByteArray& bytes) = 0;

Q_SIGNALS:
    /** Knots `first` to `last`, or the line between them, became other ones: all of the curve where
        one knot moves it all. What lies beyond the first or the last knot changes with that one.
        After knots were added or taken away: from 0 to the new count, without one to -1. */
    void knotsChanged(int curve, int first, int last);
    /** Knots were selected, or are no more; no part of what knotsChanged() tells. */
    void selectionChanged(int curve);
    /** Count, names, colours, abilities or limits became other ones. */
    void curvesChanged();
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CurveModel::Abilities)

} // namespace Kestrel::UI
