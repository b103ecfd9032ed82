#pragma once

#include <KxUI/scopes/HistogramColumns_p.h>
#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ScopeView_p.h>

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace Kestrel::UI {

/** What a histogram shows. */
class HistogramScopePrivate : public ScopeViewPrivate {
public:
    /** What a curve is of: a channel by its number in ScopeHistogram, or one of two more. */
    enum Trace : int {
        Red,
        Green,
        Blue,
        Alpha,
        Luma,
        Largest,
        Saturation,
        Hue,
        Traces ///< how many there are
    };

    QString name() const override;
    ScopeModel::Parts parts() const override;
    QMarginsF margins() const override;
    Qt::Orientations zooms() const override { return Qt::Horizontal; }
    void paintTrace(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintMarks(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintSelection(DrawingContext& context, const ScopeGeometry& geometry) override;
    ScopeReadout readoutAt(const QPointF& uv) const override;
    QRectF readArea(const ScopeGeometry& geometry) const override;
    bool pansAt(const ScopeGeometry& geometry, const QPointF& position) const override;
    QPointF panned(const QPointF& uv) const override;
    void zoomAbout(const QPointF& uv, double factor) override;
    QSizeF step() const override;
    ScopeSelection selectionOf(const QPointF& from, const QPointF& to,
                               const QVector<QPointF>& path) const override;
    bool click(const ScopeGeometry& geometry, const QPointF& position) override;
    void resultChanged() override { m_columns.clear(); }
    void saveTo(QVariantMap& state) const override;
    void restoreFrom(const QVariantMap& state) override;
    void addActions(QMenu& menu) override;

    HistogramScope* view() const { return static_cast<HistogramScope*>(q); }
    /** Settings that columns depend on have changed. */
    void changeColumns();

    HistogramScope::Layout layout = HistogramScope::Overlay;
    HistogramScope::Channels channels =
        HistogramScope::Red | HistogramScope::Green | HistogramScope::Blue | HistogramScope::Luma;
    HistogramScope::Axis axis = HistogramScope::LinearAxis;
    double lower = -0.1;
    double upper = 1.1;
    bool logCounts = false;
    bool cumulative = false;
    bool equalArea = false;
    HistogramScope::FullHeight fullHeight = HistogramScope::TallestInside;
    double fullShare = 0.02;

private:
    /** What is drawn of a trace. */
    struct Columns {
        Trace trace;
        std::vector<float> heights;   ///< 0 to 1 and more, from the left
        std::vector<float> reference; ///< of what is held; may be empty
        std::vector<float> sums;      ///< the share at or below; may be empty
    };
    /** A part of the plot with an axis of its own. */
    struct Cell {
        QRectF area;
        std::vector<Trace> traces; ///< that are drawn in it; not empty
    };
    /** What a place of the scope is. */
    struct Spot {
        enum Side { Below, Inside, Above, NotANumber };

        Cell cell;
        double u = 0; ///< on the cell's axis
        Side side = Inside;
    };
    /** What lies beyond the ends of an axis, or nowhere on it. */
    struct Beyond {
        std::uint64_t below = 0;
        std::uint64_t above = 0;
        std::uint64_t none = 0;

        std::uint64_t of(Spot::Side side) const {
            return side == Spot::Below ? below : side == Spot::Above ? above : none;
        }
    };

    // Of the bars of what is beyond an axis, and between them and it.
    static constexpr double SideWidth = 6;
    static constexpr double SideGap = 3;
    static constexpr double NoneGap = 2;
    static constexpr double NoneWidth = 3;
    static constexpr double CellGap = SideWidth + 2 * SideGap + SideWidth + NoneGap + NoneWidth;

    /** Saturation and hue have an axis of their own. */
    static bool isOfColor(Trace trace) { return trace >= Saturation; }
    ScopeHistogram::Axis axisOf(Trace trace) const;
    double lowerOf(Trace trace) const { return isOfColor(trace) ? 0 : lower; }
    double upperOf(Trace trace) const { return isOfColor(trace) ? 1 : upper; }
    double position(Trace trace, double value) const;
    double valueAt(Trace trace, double u) const;
    double placeOf(Trace trace, double value) const;
    QString textOf(Trace trace, double value) const;
    static QString traceName(Trace trace);

    static const CodeCounts::Counts* countsOf(const ScopeResult& result, Trace trace);
    static CodeAxis codesOf(const ScopeResult& result, Trace trace);
    std::vector<Trace> shown() const;
    std::vector<Trace> shownAndCounted() const;
    /** As it is wanted, or in rows where there is no room for columns. */
    HistogramScope::Layout arrangement(const ScopeGeometry& geometry) const;
    std::vector<Cell> cells(const ScopeGeometry& geometry) const;
    /** Whose axis a cell shows. */
    static Trace mainTrace(const Cell& cell);
    double xOf(const Cell& cell, double u) const;
    std::optional<Spot> spotAt(const ScopeGeometry& geometry, const QPointF& position) const;
    std::uint64_t countAt(Trace trace, const Spot& spot) const;
    Beyond beyond(Trace trace) const;
    std::pair<double, double> seenOf(Trace trace) const;
    bool hasNone(const Cell& cell) const;
    QString countsText(const Spot& spot) const;
    void restoreHeights(const QVariantMap& state);
    ScopeReadout sideReadout(const Spot& spot) const;
    /** What a selection in a cell looks at; nothing for alpha. */
    static std::optional<ScopeSelection::Channel> channelOf(const Cell& cell);
    static bool concerns(const ScopeSelection& selection, const Cell& cell);
    static double valueOf(const ScopeSample& sample, Trace trace);

    QColor lightOf(Trace trace) const;
    const CodePlaces& places(CodeAxis codes, ScopeHistogram::Axis on) const;
    void makeColumns(int count);
    Columns columnsOf(Trace trace, int count) const;
    void makeAreasEqual(Trace trace, std::vector<float>& columns) const;
    float fullOf(const Columns& columns) const;
    std::vector<float> heightsOf(const std::vector<float>& columns, float most) const;
    void paintCell(DrawingContext& context, const Cell& cell) const;
    void paintName(DrawingContext& context, const Cell& cell, bool isAbove) const;
    void paintChannel(DrawingContext& context, const QRectF& area, const Columns& columns) const;
    void paintLine(DrawingContext& context, const QRectF& area, const std::vector<float>& heights,
                   const LineStroke& stroke) const;
    void paintSides(DrawingContext& context, const QRectF& area,
                    const std::vector<Trace>& traces) const;
    void paintAxes(DrawingContext& context, const ScopeGeometry& geometry,
                   const std::vector<Cell>& all) const;
    void paintAxis(DrawingContext& context, const Cell& cell, bool withTexts) const;
    void paintHues(DrawingContext& context, const QRectF& area) const;

    std::vector<Columns> m_columns;
    std::array<float, 3> m_full{}; // what fills the height: values, saturation, hue
    mutable std::vector<CodePlaces> m_places;
};

} // namespace Kestrel::UI
