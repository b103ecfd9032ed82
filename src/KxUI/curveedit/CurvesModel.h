#pragma once

#include <KxUI/curveedit/CurveModel.h>
#include <KxUI/curves/Curves.h>

#include <QMetaType>
#include <QStringList>

#include <memory>

Q_DECLARE_METATYPE(Kestrel::UI::Curves)

namespace Kestrel::UI {

/** The transfer curves of a `Curves` for a `CurveView`: one to four of them on the unit square. They
    are natural splines, whose knots have neither shapes nor slopes of their own; the slopes that a
    knot tells are those of the spline. One knot moves all of its curve.

    Knots stay in the unit square, by 1/512 apart; nearer ones could not be told apart nor grabbed
    again. Two knots stay, and no more come than the curve's maxKnots(). */
class KXUI_EXPORT CurvesModel : public CurveModel {
    Q_OBJECT
    Q_PROPERTY(Kestrel::UI::Curves curves READ curves WRITE setCurves NOTIFY valueChanged)
    Q_PROPERTY(QStringList names READ names WRITE setNames NOTIFY curvesChanged)

public:
    /** One curve, the identity with room for eight knots. */
    explicit CurvesModel(QObject* parent = nullptr);
    ~CurvesModel() override;

    /** The curves, the user's selection included. */
    const Curves& curves() const;
    /** Replaces them all. Curves that equal the present ones change nothing, also not the
        selection, so that a host may answer an edit with what it was told. Knots that are no
        numbers are left out, others sorted. */
    void setCurves(const Curves& curves);

    /** The curve in a slot of curves(); an unused one is the identity. */
    Curve curve(int slot) const;
    /** Replaces one curve, by the same rules; nothing outside the count. */
    void setCurve(int slot, const Curve& curve);

    /** What curves are called instead of Red, Green, Blue and Master; an empty name, and those that
        the list does not reach, are called so. */
    QStringList names() const;
    void setNames(const QStringList& names);

    int count() const override;
    QString name(int curve) const override;
    /** Those of `ChannelColors`; neutral for the master, and for a curve that is alone. */
    QColor color(int curve, const QPalette& palette) const override;
    Abilities abilities(int curve) const override;
    Limits limits(int curve) const override;
    int knots(int curve) const override;
    Knot knot(int curve, int index) const override;
    void places(int curve, int first, int count, QPointF* out) const override;
    int firstKnotFrom(int curve, double x) const override;
    void sample(int curve, double from, double to, int count, double* out) const override;
    bool move(const std::vector<Move>& moves) override;
    int add(int curve, double x, double y) override;
    int addOnLine(int curve, double x) override;
    bool remove(int curve, const std::vector<int>& knots) override;
    void select(int curve, int first, int last, SelectionMode mode) override;
    QByteArray save(int curve) const override;
    /** Also texts with words of `KeyCurve::text()`, of which the selection alone counts. */
    bool load(int curve, const QByteArray& bytes) override;

Q_SIGNALS:
    /** A curve became another one, by whomever; a selection makes none. Follows knotsChanged(). */
    void valueChanged();

private:
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
