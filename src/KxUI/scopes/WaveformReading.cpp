#include <KxUI/scopes/WaveformScope_p.h>

#include <QTimer>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Kestrel::UI {

bool WaveformScopePrivate::isYCbCr() const {
    return mode == WaveformScope::YCbCrParade || mode == WaveformScope::YCbCrStack;
}

std::vector<ScopeWaveform::Channel> WaveformScopePrivate::channels() const {
    if (mode == WaveformScope::Luma)
        return {ScopeWaveform::Luma};
    if (isYCbCr())
        return {ScopeWaveform::Luma, ScopeWaveform::Cb, ScopeWaveform::Cr};
    return {ScopeWaveform::Red, ScopeWaveform::Green, ScopeWaveform::Blue};
}

WaveformLayout WaveformScopePrivate::layout() const {
    WaveformLayout::Arrangement arrangement = WaveformLayout::Overlay;
    if (mode == WaveformScope::RgbParade || mode == WaveformScope::YCbCrParade)
        arrangement = WaveformLayout::Parade;
    else if (mode == WaveformScope::RgbStack || mode == WaveformScope::YCbCrStack)
        arrangement = WaveformLayout::Stack;
    return {channels(), arrangement, orientation == WaveformScope::Rows};
}

ScopeModel::Parts WaveformScopePrivate::parts() const {
    return fits ? ScopeModel::Waveform | ScopeModel::Values
                : ScopeModel::Parts(ScopeModel::Waveform);
}

WaveformRange WaveformScopePrivate::waveformRange() const {
    int bits = 0;
    for (const Channel channel : channels())
        bits |= 1 << channel;
    // In a stack the seen part is another one for each channel.
    double begin = 0;
    double end = 1;
    if (layout().arrangement != WaveformLayout::Stack) {
        const bool rows = orientation == WaveformScope::Rows;
        begin = rows ? viewport.left : viewport.bottom;
        end = begin + (rows ? viewport.width : viewport.height);
    }
    const SourceCodes codes(model ? model->image() : ScopeImage(), encoding());
    WaveformRange range = waveformRangeFor(axis, bits, begin, end, codes, encoding());
    range.byRows = orientation == WaveformScope::Rows;
    return range;
}

bool WaveformScopePrivate::shows(const ScopeResult& counted) const {
    const bool rows = orientation == WaveformScope::Rows;
    return counted.waveform.columns > 0 && counted.waveform.byRows == rows;
}

WaveformAxis WaveformScopePrivate::axisOf(Channel channel) const {
    return isChroma(channel) ? axis.ofChroma(encoding()) : axis;
}

void WaveformScopePrivate::changeCounts() {
    askModel();
    resetPeak();
}

void WaveformScopePrivate::changePicture() {
    m_traces.clear();
    changeTrace();
}

void WaveformScopePrivate::resetPeak() {
    m_peaks = {};
    m_peakSerial = 0;
    takePeaks();
    changePicture();
}

void WaveformScopePrivate::resultChanged() {
    m_traces.clear();
    takePeaks();
    fitIfCounted();
    // Another picture may be in other codes.
    const WaveformRange wanted = waveformRange();
    if (wanted == m_asked)
        return;
    m_asked = wanted;
    askModel();
}

void WaveformScopePrivate::takePeaks() {
    const auto counted = result();
    const bool wanted =
        envelope == WaveformScope::PeakEnvelope || envelope == WaveformScope::BothEnvelopes;
    if (!wanted || !shows(*counted) || counted->serial == m_peakSerial)
        return;
    m_peakSerial = counted->serial;
    for (const Channel channel : channels())
        m_peaks[channel].unite(WaveformEnvelope(counted->waveform, channel));
}

// What waits for the range may delete the scope, so it is told of it by itself.
void WaveformScopePrivate::fitIfCounted() {
    if (!fits || result()->values.isEmpty())
        return;
    const ValueRange range = result()->values.fittingRange(1);
    QTimer::singleShot(0, view(), [this, range] {
        if (fits)
            view()->setRange(double(range.lower), double(range.upper));
    });
}

QString WaveformScopePrivate::channelName(Channel channel) {
    switch (channel) {
    case ScopeWaveform::Red:
        return WaveformScope::tr("Red");
    case ScopeWaveform::Green:
        return WaveformScope::tr("Green");
    case ScopeWaveform::Blue:
        return WaveformScope::tr("Blue");
    case ScopeWaveform::Cb:
        return WaveformScope::tr("Cb");
    case ScopeWaveform::Cr:
        return WaveformScope::tr("Cr");
    default:
        return WaveformScope::tr("Luma");
    }
}

QSizeF WaveformScopePrivate::pixelOfCell() const {
    const QRectF plot = geometry().plot;
    const WaveformLayout cells = layout();
    const QRectF& area = cells.cells.front().area; // all are as large
    const QSizeF pixel(viewport.width / (plot.width() * area.width()),
                       viewport.height / (plot.height() * area.height()));
    return cells.byRows ? pixel.transposed() : pixel;
}

// What the cell of a table, or the pixel where that is larger, covers.
std::optional<WaveformScopePrivate::Span>
WaveformScopePrivate::spanAt(const ScopeWaveform& waveform, Channel channel,
                             const QPointF& st) const {
    const auto cut = [](double place, double half, int cells) {
        const double first = std::floor(place - half);
        const double end = half > 0.5 ? std::ceil(place + half) : std::floor(place) + 1;
        const double begin = half > 0.5 ? first : std::floor(place);
        return std::pair<int, int>(int(std::clamp(begin, 0.0, double(cells))),
                                   int(std::clamp(end, 0.0, double(cells))));
    };
    const ValueRange& range = waveform.range(channel);
    const QSizeF pixel = pixelOfCell();
    const WaveformAxis values = axisOf(channel);
    const double scale = double(range.bins) / (double(range.upper) - double(range.lower));
    const double bin = (values.valueAt(st.y()) - double(range.lower)) * scale;
    const double binHalf = pixel.height() * (values.upper - values.lower) * scale / 2;
    const auto [firstColumn, endColumn] =
        cut(st.x() * waveform.columns, pixel.width() * waveform.columns / 2, waveform.columns);
    if (firstColumn >= endColumn || !waveform.has(channel))
        return std::nullopt;
    const auto [firstBin, endBin] = cut(bin, binHalf, range.bins);
    return Span{firstColumn, endColumn, firstBin, endBin};
}

ScopeReadout WaveformScopePrivate::readoutOf(const ScopeWaveform& waveform, Channel channel,
                                             const QPointF& st) const {
    ScopeReadout readout;
    const std::optional<Span> span = spanAt(waveform, channel, st);
    if (!span)
        return readout;
    for (int column = span->firstColumn; column < span->endColumn; ++column) {
        const std::uint32_t* const bins = waveform.column0(channel, column);
        readout.count = std::accumulate(bins + span->firstBin, bins + span->endBin, readout.count);
    }
    const bool isBin = span->endBin - span->firstBin == 1;
    readout.value =
        isBin ? waveform.range(channel).center(span->firstBin) : axisOf(channel).valueAt(st.y());
    readout.valueText = valueText(readout.value, isChroma(channel));
    readout.channel = channelName(channel);
    const auto counted = result();
    const int origin = waveform.byRows ? counted->region.top : counted->region.left;
    readout.firstColumn = origin + waveform.firstPixel(span->firstColumn) * counted->proxy;
    readout.lastColumn = origin + waveform.firstPixel(span->endColumn) * counted->proxy - 1;
    const auto all = std::accumulate(waveform.columnPixels.begin(), waveform.columnPixels.end(),
                                     std::uint64_t(0));
    readout.share = all > 0 ? double(readout.count) / double(all) : 0;
    return readout;
}

QString WaveformScopePrivate::placeText(const ScopeReadout& readout) const {
    const QString axisName =
        orientation == WaveformScope::Rows ? QStringLiteral("y") : QStringLiteral("x");
    const QString first = QString::number(readout.firstColumn);
    if (readout.firstColumn == readout.lastColumn)
        return QStringLiteral("%1 %2").arg(axisName, first);
    return QStringLiteral("%1 %2\u2013%3")
        .arg(axisName, first, QString::number(readout.lastColumn));
}

ScopeReadout WaveformScopePrivate::readoutAt(const QPointF& uv) const {
    const auto counted = result();
    if (!shows(*counted) || !QRectF(0, 0, 1, 1).contains(uv))
        return {};
    const WaveformLayout cells = layout();
    const std::size_t index = cells.cellAt(uv);
    const QPointF st = cells.toCell(index, uv);
    const std::vector<Channel>& there = cells.cells[index].channels;
    ScopeReadout readout = readoutOf(counted->waveform, there.front(), st);
    if (readout.channel.isEmpty())
        return {};
    describe(readout);
    if (there.size() > 1) {
        QStringList each;
        for (const Channel channel : there) {
            const ScopeReadout one = readoutOf(counted->waveform, channel, st);
            each.append(WaveformScope::tr("%1 %2").arg(channelName(channel),
                                                       q->locale().toString(one.count)));
        }
        readout.text = readout.valueText + QStringLiteral(": ") + each.join(QStringLiteral(", "));
    }
    readout.text += QStringLiteral(", ") + placeText(readout);
    return readout;
}

QRect WaveformScopePrivate::pixelsAt(const QPointF& uv) const {
    const ScopeReadout readout = readoutAt(uv);
    if (readout.isNull())
        return {};
    const ScopeRegion region = result()->region;
    const int size = readout.lastColumn - readout.firstColumn + 1;
    return orientation == WaveformScope::Rows
               ? QRect(region.left, readout.firstColumn, region.width, size)
               : QRect(readout.firstColumn, region.top, size, region.height);
}

// A bin, or a pixel where that is larger.
QSizeF WaveformScopePrivate::step() const {
    const WaveformLayout cells = layout();
    const std::size_t index = cells.cellAt(cursor.value_or(QPointF(0.5, 0.5)));
    QSizeF size = pixelOfCell();
    const auto counted = result();
    if (shows(*counted)) {
        const Channel channel = cells.cells[index].channels.front();
        const ValueRange& range = counted->waveform.range(channel);
        const WaveformAxis values = axisOf(channel);
        const double bin = (double(range.upper) - double(range.lower)) / range.bins /
                           (values.upper - values.lower);
        size = size.expandedTo(QSizeF(1.0 / counted->waveform.columns, bin));
    }
    if (cells.byRows)
        size.transpose();
    const QRectF& area = cells.cells[index].area;
    return {size.width() * area.width(), size.height() * area.height()};
}

ScopeSelection WaveformScopePrivate::selectionOf(const QPointF& from, const QPointF& to,
                                                 const QVector<QPointF>&) const {
    const WaveformLayout cells = layout();
    const std::size_t index = cells.cellAt(drag.isSelecting() ? from : (from + to) / 2);
    const std::vector<Channel>& there = cells.cells[index].channels;
    const WaveformAxis values = axisOf(there.front());
    const double a = std::clamp(cells.toCell(index, from).y(), 0.0, 1.0);
    const double b = std::clamp(cells.toCell(index, to).y(), 0.0, 1.0);
    ScopeSelection selection;
    selection.kind = ScopeSelection::Kind::Values;
    selection.channel =
        there.size() > 1 ? ScopeSelection::Any : ScopeSelection::Channel(there.front());
    selection.lower = float(values.valueAt(std::min(a, b)));
    selection.upper = float(values.valueAt(std::max(a, b)));
    if (!drag.isSelecting())
        snap(selection, there.front(), cells.toCell(index, (from + to) / 2));
    return selection;
}

void WaveformScopePrivate::snap(ScopeSelection& selection, Channel channel,
                                const QPointF& st) const {
    const auto counted = result();
    const ScopeWaveform& waveform = counted->waveform;
    if (!shows(*counted))
        return;
    if (const auto span = spanAt(waveform, channel, st)) {
        const ValueRange& range = waveform.range(channel);
        const float bin = (range.upper - range.lower) / float(range.bins);
        selection.lower = range.lower + float(span->firstBin) * bin;
        selection.upper = range.lower + float(span->endBin) * bin;
    }
}

} // namespace Kestrel::UI
