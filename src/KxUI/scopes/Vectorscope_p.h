#pragma once

#include <KxUI/scopes/CountWindow_p.h>
#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/TraceKey_p.h>
#include <KxUI/scopes/VectorPlane_p.h>
#include <KxUI/scopes/Vectorscope.h>

#include <limits>

namespace Kestrel::UI {

/** What a vectorscope shows. */
class VectorscopePrivate : public ScopeViewPrivate {
public:
    QString name() const override;
    ScopeModel::Parts parts() const override { return ScopeModel::Vectors; }
    VectorRange vectorRange() const override;
    bool isSquare() const override { return true; }
    void paintTrace(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintMarks(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintSelection(DrawingContext& context, const ScopeGeometry& geometry) override;
    ScopeReadout readoutAt(const QPointF& uv) const override;
    QSizeF step() const override;
    ScopeSelection selectionOf(const QPointF& from, const QPointF& to,
                               const QVector<QPointF>& path) const override;
    void resultChanged() override;
    void saveTo(QVariantMap& state) const override;
    void restoreFrom(const QVariantMap& state) override;
    void addActions(QMenu& menu) override;

    Vectorscope* view() const { return static_cast<Vectorscope*>(q); }
    VectorPlane plane() const { return {logRadius}; }
    /** Something else is to be counted, or shown as something else. */
    void changeCounts();

    int gain = 1;
    bool logRadius = false;
    Vectorscope::Targets targets = Vectorscope::Targets75 | Vectorscope::Targets100;
    Vectorscope::Boxes boxes = Vectorscope::SmallBoxes;
    bool iqLines = false;
    bool skinToneLine = false;
    double skinToneAngle = 123;
    bool gamutHull = true;
    Vectorscope::Coloring coloring = Vectorscope::Phosphor;
    double lumaLower = -std::numeric_limits<double>::infinity();
    double lumaUpper = std::numeric_limits<double>::infinity();

private:
    void addMatrixActions(QMenu& menu);
    void addLineActions(QMenu& menu);
    /** Of signals, which the gain applies to, unlike targets. */
    QPointF signalAt(const QPointF& uv) const { return plane().fromUv(uv) / gain; }
    QPointF uvOfSignal(const QPointF& chroma) const { return plane().toUv(chroma * gain); }

    void makeTraces(const ScopeGeometry& geometry);
    IntensityGrid lightOf(const ScopeVectors& vectors, const ScopeGeometry& geometry) const;
    IntensityGrid logLightOf(const ScopeVectors& vectors, const ScopeGeometry& geometry) const;
    /** What even spread over the plane would give a cell. */
    double expected(const ScopeVectors& vectors) const;
    QImage tinted(const PlacedLight& lit, const ScopeGeometry& geometry) const;
    /** What the cells that are read at a place cover; nothing where nothing is counted. */
    QRectF chromaAt(const QPointF& uv) const;
    QRectF cellsAt(const ScopeVectors& vectors, const QPointF& uv) const;
    std::uint64_t countAt(const QPointF& uv) const;

    void paintPlane(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintTargets(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintDirection(DrawingContext& context, const ScopeGeometry& geometry, double degrees,
                        bool through, const LineStroke& stroke, const QString& label) const;
    void paintOutline(DrawingContext& context, const ScopeGeometry& geometry,
                      const QPolygonF& chroma, const LineStroke& stroke) const;
    void paintOutside(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintSettings(DrawingContext& context, const ScopeGeometry& geometry) const;

    PlacedLight m_light;
    PlacedLight m_reference;
    TraceKey m_key; // of none: they are of other counts
    VectorRange m_asked;
};

} // namespace Kestrel::UI
