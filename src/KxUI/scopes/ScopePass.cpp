#include <KxUI/scopes/ScopePass_p.h>

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/HueCounting_p.h>
#include <KxUI/scopes/ScopeScratch_p.h>

#include <algorithm>
#include <bitset>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostWaveformColumns = 16384;
constexpr int MostVectorCells = 1024;
// Columns of a strip: their counters fit the second level of the cache. Rows of a band: units enough
// for all threads.
constexpr int StripColumns = 96;
constexpr int BandRows = 32;

constexpr int Chroma = 1 << ScopeWaveform::Cb | 1 << ScopeWaveform::Cr;

using Waveform = ScopeWaveform::Channel;
using Values = ScopeHistogram::Channel;

ScopeRequest normalized(ScopeRequest request) {
    request.waveform.values = request.waveform.values.normalized();
    request.waveform.chroma = request.waveform.chroma.normalized();
    request.waveform.mostColumns = std::clamp(request.waveform.mostColumns, 1, MostWaveformColumns);
    request.vectors.chroma.bins = std::min(request.vectors.chroma.bins, MostVectorCells);
    request.vectors.chroma = request.vectors.chroma.normalized();
    request.solid.bins = std::min(request.solid.bins, ScopeSolid::MostCells);
    request.solid = request.solid.normalized();
    request.rowStep = std::clamp(request.rowStep, 1, 1 << 16);
    return request;
}

std::size_t bitCount(int bits) {
    return std::bitset<32>(unsigned(bits)).count();
}

} // namespace

ScopePass::ScopePass(ScopeImage image, const ScopeRequest& request, int unitSize)
    : m_image(std::move(image))
    , m_request(normalized(request))
    , m_reader(m_image, m_request.encoding,
               wants(ScopeRequest::Values) && wants(ScopeHistogram::Alpha)) {
    cutRegion();
    const bool waveform = wants(ScopeRequest::Waveform);
    const int channels = waveform ? m_request.waveform.channels : 0;
    if (waveform)
        makeWaveform();
    m_strips = waveform && !m_request.waveform.byRows;
    m_derivesChroma = wants(ScopeRequest::Vectors) || (channels & Chroma) != 0;
    m_derivesLuma =
        m_derivesChroma || wants(ScopeRequest::Values) || (channels & WaveformRange::Luma) != 0;
    const auto isCounted = [this](ScopeRequest::Part part, std::size_t counters) {
        return wants(part) ? counters : 0;
    };
    m_countersOfPixel = std::max<std::size_t>(
        1, isCounted(ScopeRequest::Values, bitCount(m_request.values)) +
               isCounted(ScopeRequest::Waveform, bitCount(channels)) +
               isCounted(ScopeRequest::Vectors, 1) + isCounted(ScopeRequest::Solid, 1) +
               isCounted(ScopeRequest::Hues, 1));
    cutUnits(unitSize);
}

ScopePass::~ScopePass() = default;

// The part of the image that the region covers, in its own pixels.
void ScopePass::cutRegion() {
    const ScopeRegion frame = m_image.frame();
    const ScopeRegion region = m_request.wholeFrame ? frame : frame.intersected(m_request.region);
    if (region.isEmpty())
        return;
    const int proxy = std::max(m_image.proxy, 1);
    const auto cut = [proxy](int start, int size, int origin) {
        const int from = start - origin;
        return Span{from / proxy, (from + size + proxy - 1) / proxy};
    };
    m_x = cut(region.left, region.width, frame.left);
    m_y = cut(region.top, region.height, frame.top);
}

void ScopePass::cutUnits(int unitSize) {
    const bool waveform = wants(ScopeRequest::Waveform);
    const int columns = waveform ? m_waveform.columns : m_y.end - m_y.begin;
    const int pixels = m_strips ? m_x.end - m_x.begin : m_y.end - m_y.begin;
    const int wanted = unitSize > 0 ? unitSize : m_strips ? StripColumns : BandRows;
    m_fold = std::size_t(columns > 0 ? (pixels + columns - 1) / columns : 1);
    m_unitSize = std::max(wanted / int(m_fold), 1);
    if (waveform)
        m_unitSize = std::min(m_unitSize, WaveformStrip::mostColumns(m_waveform));
    m_units = m_x.begin < m_x.end ? (columns + m_unitSize - 1) / m_unitSize : 0;
}

void ScopePass::makeWaveform() {
    const WaveformRange& range = m_request.waveform;
    m_waveform.byRows = range.byRows;
    m_waveform.luma = range.values;
    m_waveform.chroma = range.chroma;
    const int across = m_x.end - m_x.begin;
    const int down = m_y.end - m_y.begin;
    m_waveform.pictureColumns = range.byRows ? down : across;
    m_waveform.pictureRows = range.byRows ? across : down;
    m_waveform.columns = std::min(m_waveform.pictureColumns, range.mostColumns);
    const auto columns = std::size_t(m_waveform.columns);
    m_waveform.columnPixels.assign(columns, 0);
    for (int i = 0; i < ScopeWaveform::Channels && columns > 0; ++i) {
        const auto channel = Waveform(i);
        if ((range.channels & 1 << i) == 0)
            continue;
        m_waveform.counts[channel].assign(columns * std::size_t(m_waveform.range(channel).bins), 0);
        m_waveform.below[channel].assign(columns, 0);
        m_waveform.above[channel].assign(columns, 0);
        m_waveform.nan[channel].assign(columns, 0);
    }
    if (columns == 0)
        return;
    const int step = m_request.rowStep;
    const int rows = range.byRows ? 1 : (down + step - 1) / step;
    m_columnOf.resize(std::size_t(m_waveform.pictureColumns));
    for (int pixel = 0; pixel < m_waveform.pictureColumns; ++pixel) {
        const int column =
            int(std::int64_t(pixel) * m_waveform.columns / m_waveform.pictureColumns);
        m_columnOf[std::size_t(pixel)] = std::uint32_t(column);
        const bool counted = !range.byRows || pixel % step == 0;
        m_waveform.columnPixels[std::size_t(column)] +=
            counted ? std::uint32_t(range.byRows ? across : rows) : 0;
    }
}

bool ScopePass::wants(ScopeHistogram::Channel channel) const {
    return (m_request.values & 1 << channel) != 0 &&
           (channel != ScopeHistogram::Alpha || m_image.hasAlpha());
}

CodeAxis ScopePass::axis(ScopeHistogram::Channel channel) const {
    if (channel == ScopeHistogram::Alpha)
        return m_reader.alphaAxis();
    return channel == ScopeHistogram::Luma ? CodeAxis() : m_reader.colorAxis();
}

std::unique_ptr<ScopePass::Scratch> ScopePass::makeScratch() const {
    std::unique_ptr<Scratch> scratch;
    prepare(scratch);
    return scratch;
}

void ScopePass::prepare(std::unique_ptr<Scratch>& scratch) const {
    if (!scratch)
        scratch = std::make_unique<Scratch>();
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        const auto channel = Values(i);
        const bool counts = wants(ScopeRequest::Values) && wants(channel);
        scratch->codes[channel].assign(counts ? std::size_t(axis(channel).count()) : 0, 0);
        scratch->sums[channel].reset(counts && m_reader.isFine() ? new ExactSums : nullptr);
    }
    const bool vectors = wants(ScopeRequest::Vectors);
    const bool solid = wants(ScopeRequest::Solid);
    scratch->vectors.assign(vectors ? VectorSlots(m_request.vectors.chroma.bins).count() : 0, 0);
    scratch->solid.assign(solid ? SolidSlots(m_request.solid.bins).count() : 0, 0);
    const std::size_t hues = wants(ScopeRequest::Hues) ? HueSlots::Count : 0;
    scratch->hues.assign(hues, 0);
    scratch->saturations.assign(hues, 0);
    scratch->outsideByDegree.fill(0);
    scratch->places.known = false;
    scratch->legal = LegalCounts();
    scratch->pixels = 0;
    scratch->transparent = 0;
}

} // namespace Kestrel::UI
