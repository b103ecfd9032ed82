#pragma once

#include <KxUI/curveedit/CurveModel.h>
#include <KxUI/curves/KeyCurve.h>

#include <memory>

namespace Kestrel::UI {

/** Curves of animated parameters for a `CurveView`: any number of `KeyCurve`s, each with its name,
    colour, limits and what can be done to it. Knots are keys. */
class KXUI_EXPORT KeyCurveModel : public CurveModel {
    Q_OBJECT

public:
    /** No curves. */
    explicit KeyCurveModel(QObject* parent = nullptr);
    ~KeyCurveModel() override;

    /** Adds a curve behind the others; its index. Without limits, all can be done to it. */
    int addCurve(const QString& name, const KeyCurve& curve = KeyCurve());
    /** Takes one away; nothing outside the count. Those behind it move up. */
    void removeCurve(int curve);

    /** A curve, the user's selection included; one without keys outside the count. */
    KeyCurve keyCurve(int curve) const;
    /** Replaces a curve. One that equals the present one changes nothing, also not the selection, so
        that a host may answer an edit with what it was told. Limits do not count for it. Nothing
        outside the count. */
    void setKeyCurve(int curve, const KeyCurve& keys);

    /** What a curve is called, for the user. */
    void setName(int curve, const QString& name);
    /** What it is drawn in; not valid, as at first: one of `ChannelColors` by its index, and the
        palette's text where it is the only one. */
    void setColor(int curve, const QColor& color);
    /** What can be done to it. */
    void setAbilities(int curve, Abilities abilities);
    /** Where its keys may be; `stepX` 1 holds them to whole frames. Infinite at first. */
    void setLimits(int curve, const Limits& limits);

    int count() const override;
    QString name(int curve) const override;
    QColor color(int curve, const QPalette& palette) const override;
    Abilities abilities(int curve) const override;
    Limits limits(int curve) const override;
    int knots(int curve) const override;
    /** The slopes are those of the line, whatever its shape. */
    Knot knot(int curve, int index) const override;
    void places(int curve, int first, int count, QPointF* out) const override;
    std::vector<int> selectedKnots(int curve) const override;
    int firstKnotFrom(int curve, double x) const override;
    void sample(int curve, double from, double to, int count, double* out) const override;
    /** Exact, bends between keys included. */
    void ranges(int curve, double from, double to, int count, double* low,
                double* high) const override;
    bool move(const std::vector<Move>& moves) override;
    /** The key goes on as the one before it, which is then bent by it. */
    int add(int curve, double x, double y) override;
    /** Changes nothing of the line between the first and the last key, within the limits. */
    int addOnLine(int curve, double x) override;
    bool remove(int curve, const std::vector<int>& knots) override;
    /** `KeyCurve::Shape::Free` keeps the line as it is and lets its slopes be changed; but what is
        left of a natural run bends anew, here and in setSlopes(). */
    bool setShape(int curve, const std::vector<int>& knots, int shape) override;
    bool setSlopes(int curve, int knot, double in, double out, bool broken) override;
    void select(int curve, int first, int last, SelectionMode mode) override;
    /** `KeyCurve::text()`. */
    QByteArray save(int curve) const override;
    bool load(int curve, const QByteArray& bytes) override;

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
