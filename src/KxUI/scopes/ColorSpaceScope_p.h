#pragma once

#include <KxUI/scopes/ColorSpaceScope.h>
#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/SolidCloud_p.h>
#include <KxUI/scopes/SolidProjection_p.h>
#include <KxUI/scopes/SolidShape_p.h>

#include <vector>

namespace Kestrel::UI {

/** What a cloud of colours shows. */
class ColorSpaceScopePrivate : public ScopeViewPrivate {
public:
    static constexpr SolidOrbit Home{32, 24};

    ColorSpaceScopePrivate() { drag.setTurns(true); }

    QString name() const override;
    ScopeModel::Parts parts() const override { return ScopeModel::Solid; }
    QMarginsF margins() const override;
    void paintTrace(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintMarks(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintSelection(DrawingContext& context, const ScopeGeometry& geometry) override;
    ScopeReadout readoutAt(const QPointF& uv) const override;
    QSizeF step() const override;
    ScopeSelection selectionOf(const QPointF& from, const QPointF& to,
                               const QVector<QPointF>& path) const override;
    void turn(const QPointF& path) override;
    void resetView() override;
    bool isMoreKey(const QKeyEvent& event) const override;
    void pressMoreKey(const QKeyEvent& event) override;
    void resultChanged() override { m_isOld = true; }
    void saveTo(QVariantMap& state) const override;
    void restoreFrom(const QVariantMap& state) override;
    void addActions(QMenu& menu) override;

    ColorSpaceScope* view() const { return static_cast<ColorSpaceScope*>(q); }
    /** A setting that cells depend on has changed. */
    void changeCells();

    ColorSpaceScope::Space space = ColorSpaceScope::RgbCube;
    ColorSpaceScope::Projection projection = ColorSpaceScope::Perspective;
    SolidOrbit orbit = Home;
    int minimumCount = 1;
    bool hasSlab = false;
    double slabLower = 0;
    double slabUpper = 1;
    ColorSpaceScope::GamutWires wires = ColorSpaceScope::LegalWire | ColorSpaceScope::GreyAxis;

private:
    SolidRules rules(const ScopeGeometry& geometry) const;
    SolidProjection projectionOn(const ScopeGeometry& geometry) const;
    const std::vector<SolidCell>& cells(const ScopeGeometry& geometry) const;
    const SolidPlaces& places() const;
    /** The cell that a place speaks of; -1: none. */
    int cellAt(const QPointF& uv) const;
    void restoreSlab(const QVariantMap& state);
    int presentView() const;
    void addWires(QMenu& menu);
    void addSizes(QMenu& menu);
    QString colorText(const SolidShape::Color& rgb) const;

    void paintWires(DrawingContext& context, const SolidProjection& at, bool front) const;
    void paintCorners(DrawingContext& context, const SolidProjection& at, bool front) const;
    void paintCloud(DrawingContext& context, const ScopeGeometry& geometry,
                    const SolidProjection& at) const;
    void paintNotes(DrawingContext& context, const ScopeGeometry& geometry) const;

    // What follows from the result and the settings, made when it is asked for.
    mutable bool m_isOld = true;
    mutable std::vector<SolidCell> m_cells;
    mutable SolidRules m_rules; // of these
    mutable double m_reach = 1; // from the middle, of what is seen without zoom
    // Where cells were last, and for what.
    mutable SolidPlaces m_places;
    mutable QMatrix4x4 m_placed;
    mutable QRectF m_placedIn;
};

} // namespace Kestrel::UI
