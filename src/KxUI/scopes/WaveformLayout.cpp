#include <KxUI/scopes/WaveformLayout_p.h>

#include <KxUI/scopes/ScopeUnit.h>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int Bins = 512;
constexpr int ZoomedBins = 1024;
constexpr int MostCodeBins = 1024;

ValueRange partOf(const WaveformAxis& axis, const AxisPart& part) {
    const bool isWhole = part.begin <= 0 && part.end >= 1;
    return {float(axis.valueAt(part.begin)), float(axis.valueAt(part.end)),
            isWhole ? Bins : ZoomedBins};
}

} // namespace

WaveformLayout::WaveformLayout(const std::vector<ScopeWaveform::Channel>& channels,
                               Arrangement wanted, bool rows)
    : arrangement(wanted)
    , byRows(rows) {
    if (wanted == Overlay || channels.size() < 2) {
        cells.push_back({channels, {0, 0, 1, 1}});
        return;
    }
    // The first is on the left or at the top.
    const bool across = (wanted == Parade) != rows;
    const double size = 1.0 / double(channels.size());
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const double from = size * double(i);
        cells.push_back({{channels[i]},
                         across ? QRectF(from, 0, size, 1) : QRectF(0, 1 - from - size, 1, size)});
    }
}

std::size_t WaveformLayout::cellAt(const QPointF& uv) const {
    const auto count = double(cells.size());
    const bool across = cells.size() > 1 && cells[1].area.left() > 0;
    const double along = across ? uv.x() : 1 - uv.y();
    return std::size_t(std::clamp(std::floor(along * count), 0.0, count - 1));
}

QPointF WaveformLayout::toCell(std::size_t cell, const QPointF& uv) const {
    const QRectF& area = cells[cell].area;
    const double u = (uv.x() - area.left()) / area.width();
    const double v = (uv.y() - area.top()) / area.height();
    return byRows ? QPointF(1 - v, u) : QPointF(u, v);
}

QPointF WaveformLayout::fromCell(std::size_t cell, const QPointF& st) const {
    const QRectF& area = cells[cell].area;
    const QPointF uv = byRows ? QPointF(st.y(), 1 - st.x()) : st;
    return {area.left() + uv.x() * area.width(), area.top() + uv.y() * area.height()};
}

WaveformAxis WaveformAxis::ofChroma(const ScopeEncoding& encoding) const {
    const auto sameCode = [&encoding](double value) {
        const double code = toScopeUnit(ScopeUnit::Code8, value, encoding);
        return chromaFromScopeUnit(ScopeUnit::Code8, code, encoding);
    };
    return {sameCode(lower), sameCode(upper)};
}

SourceCodes::SourceCodes(const ScopeImage& image, const ScopeEncoding& encoding) {
    if (image.isEmpty() || encoding.transform ||
        encoding.transfer != ScopeEncoding::Transfer::AsStored ||
        image.alpha == ScopeImage::Alpha::Unpremultiply)
        return;
    switch (image.layout) {
    case PixelLayout::CbYCrY8:
    case PixelLayout::CbYCrA8:
        bits = 8;
        isYCbCr = true;
        break;
    case PixelLayout::V210:
        bits = 10;
        isYCbCr = true;
        break;
    case PixelLayout::RGB8:
    case PixelLayout::RGBA8:
    case PixelLayout::BGRA8:
        bits = 8;
        break;
    case PixelLayout::RGB10A2:
        bits = 10;
        break;
    default:
        break;
    }
    // By another matrix, the codes lie between those of the source.
    const RgbToYCbCrMatrix& stored = colorSpaceRgbToYCbCr(image.colorSpace);
    const RgbToYCbCrMatrix& shown = encoding.matrix;
    if (isYCbCr && (stored.luma != shown.luma || stored.cb != shown.cb || stored.cr != shown.cr))
        bits = 0;
}

WaveformRange waveformRangeFor(const WaveformAxis& axis, int channels, double begin, double end,
                               const SourceCodes& codes, const ScopeEncoding& encoding) {
    WaveformRange range;
    range.channels = channels;
    const AxisPart part = AxisPart::around(begin, end);
    range.values = partOf(axis, part);
    range.chroma = partOf(axis.ofChroma(encoding), part);
    if (codes.bits == 0)
        return range;
    // Of codes, any zoom has all that there is.
    const int each = std::max((1 << codes.bits) / MostCodeBins, 1);
    if (codes.isYCbCr && !(channels & WaveformRange::Rgb)) {
        range.values = ValueRange::ofCodes(codes.bits, false, each);
        range.chroma = ValueRange::ofChromaCodes(codes.bits, false, each);
    } else if (!codes.isYCbCr && !(channels & ~WaveformRange::Rgb & ~WaveformRange::Luma)) {
        range.values = ValueRange::ofCodes(codes.bits, true, each);
    }
    return range;
}

AxisPart AxisPart::around(double begin, double end) {
    const double size = std::clamp(end - begin, 1e-6, 1.0);
    if (size > 0.5)
        return {};
    // Pieces of two steps, one beginning at each step, hold whatever is not longer than a step.
    const double step = std::exp2(std::ceil(std::log2(size)));
    const double from = std::clamp(std::floor(begin / step) * step, 0.0, 1 - 2 * step);
    return {from, from + 2 * step};
}

} // namespace Kestrel::UI
