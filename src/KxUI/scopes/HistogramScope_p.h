#pragma once

#include <KxUI/scopes/HistogramColumns_p.h>
#include <KxUI/scopes/HistogramScope.h>
#include <KxUI/scopes/ScopeView_p.h>

#include <array>
#include <vector>

namespace Kestrel::UI {

/** What a histogram shows. */
class HistogramScopePrivate : public ScopeViewPrivate {
public:
    using Channel = ScopeHistogram::Channel;

    QString name() const override;
    ScopeModel::Parts parts() const override { return ScopeModel::Values; }
    QMarginsF margins() const override;
    Qt::Orientations zooms() const override { return Qt::Horizontal; }
    void paintTrace(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintMarks(DrawingContext& context, const ScopeGeometry& geometry) override;
    void paintSelection(DrawingContext& context, const ScopeGeometry& geometry) override;
    ScopeReadout readoutAt(const QPointF& uv) const override;
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

private:
    /** What is drawn of a channel. */
    struct Columns {
        Channel channel;
        std::vector<float> heights;   ///< 0 to 1 and more, from the left
        std::vector<float> reference; ///< of what is held; may be empty
        std::vector<float> sums;      ///< the share at or below; may be empty
    };

    ScopeHistogram::Axis histogramAxis() const;
    double position(double value) const;
    double valueAt(double u) const;
    double placeOf(double value) const;
    std::vector<Channel> shown() const;
    std::vector<Channel> channelsAt(double v) const;
    std::uint64_t countAt(Channel channel, double u) const;
    QRectF cell(const ScopeGeometry& geometry, std::size_t index, std::size_t count) const;
    QColor lightOf(Channel channel) const;
    static QString channelName(Channel channel);
    const CodePlaces& places(CodeAxis codes) const;
    void makeColumns(int count);
    std::vector<float> heightsOf(const std::vector<float>& columns, float most) const;
    void paintChannel(DrawingContext& context, const QRectF& area, const Columns& columns) const;
    void paintLine(DrawingContext& context, const QRectF& area, const std::vector<float>& heights,
                   const LineStroke& stroke) const;
    void paintSides(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintAxis(DrawingContext& context, const ScopeGeometry& geometry) const;

    std::vector<Columns> m_columns;
    int m_columnCount = 0;
    mutable std::vector<CodePlaces> m_places;
};

} // namespace Kestrel::UI
