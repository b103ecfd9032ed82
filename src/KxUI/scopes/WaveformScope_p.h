#pragma once

#include <KxUI/scopes/CountWindow_p.h>
#include <KxUI/scopes/ScopeView_p.h>
#include <KxUI/scopes/TraceKey_p.h>
#include <KxUI/scopes/WaveformEnvelope_p.h>
#include <KxUI/scopes/WaveformLayout_p.h>
#include <KxUI/scopes/WaveformScope.h>

#include <array>
#include <optional>
#include <vector>

namespace Kestrel::UI {

/** What a waveform shows. */
class WaveformScopePrivate : public ScopeViewPrivate {
public:
    using Channel = ScopeWaveform::Channel;

    QString name() const override;
    ScopeModel::Parts parts() const override;
    WaveformRange waveformRange() const override;
    QMarginsF margins() const override;
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

    WaveformScope* view() const { return static_cast<WaveformScope*>(q); }
    WaveformLayout layout() const;
    /** Something else is to be counted, or counted as something else. */
    void changeCounts();
    /** The counts are as they were, their light is not. */
    void changePicture();
    void resetPeak();
    /** Sets the range to the values, if that was asked for and they are counted. */
    void fitIfCounted();
    /** The part of the full frame that is counted in the columns around a place. */
    QRect pixelsAt(const QPointF& uv) const override;

    WaveformScope::Mode mode = WaveformScope::Luma;
    WaveformScope::Orientation orientation = WaveformScope::Columns;
    WaveformScope::Coloring coloring = WaveformScope::Plain;
    WaveformScope::Envelope envelope = WaveformScope::NoEnvelope;
    WaveformScope::Limits limits = WaveformScope::NoLimits;
    WaveformAxis axis;
    ScopeUnit secondUnit = ScopeUnit::Code10;
    bool isSecondUnitShown = false;
    bool fits = false; ///< once the figures are counted

private:
    /** The light of a channel, for a part of the scope between device pixels. */
    struct Trace {
        PlacedLight lit;
        QColor color;
    };
    /** Columns and bins around a place, without their ends. */
    struct Span {
        int firstColumn;
        int endColumn;
        int firstBin;
        int endBin;
    };

    void addChannelActions(QMenu& menu);
    void addUnitActions(QMenu& menu);
    bool isYCbCr() const;
    std::vector<Channel> channels() const;
    bool shows(const ScopeResult& counted) const;
    WaveformAxis axisOf(Channel channel) const;
    QColor lightOf(Channel channel) const;
    static QString channelName(Channel channel);
    std::optional<Span> spanAt(const ScopeWaveform& waveform, Channel channel,
                               const QPointF& st) const;
    /** How much of a cell a logical pixel covers, along the picture and along the values. */
    QSizeF pixelOfCell() const;
    /** The values of the bins that are read at a place of a cell. */
    void snap(ScopeSelection& selection, Channel channel, const QPointF& st) const;
    ScopeReadout readoutOf(const ScopeWaveform& waveform, Channel channel, const QPointF& st) const;
    QString placeText(const ScopeReadout& readout) const;

    QRectF visible(const ScopeGeometry& geometry, const QRectF& area) const;
    void makeTraces(const ScopeGeometry& geometry);
    void addTraces(const ScopeResult& counted, const ScopeGeometry& geometry,
                   const std::optional<QColor>& color);
    void addBeyond(const ScopeWaveform& waveform, Channel channel, const ScopeGeometry& geometry,
                   std::size_t cell, bool above, const QColor& color);
    void paintGraticules(DrawingContext& context, const ScopeGeometry& geometry) const;
    GraticuleRules rulesOf(const ScopeGeometry& geometry, std::size_t cell, ScopeUnit unit) const;
    void paintSecondLabels(DrawingContext& context, const QRectF& cell,
                           const std::vector<GraticuleLine>& lines) const;
    void paintNames(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintMark(DrawingContext& context, const ScopeGeometry& geometry, std::size_t cell,
                   Channel channel, const QPointF& st) const;
    void paintEnvelopes(DrawingContext& context, const ScopeGeometry& geometry) const;
    void paintEnvelope(DrawingContext& context, const ScopeGeometry& geometry, std::size_t cell,
                       Channel channel, const WaveformEnvelope& values,
                       const LineStroke& stroke) const;
    void takePeaks();

    std::vector<Trace> m_traces;
    TraceKey m_key;
    WaveformRange m_asked;
    std::array<WaveformEnvelope, ScopeWaveform::Channels> m_peaks;
    std::uint64_t m_peakSerial = 0; // of the result that they have last
};

} // namespace Kestrel::UI
