#include <KxUI/scopes/ScopePass_p.h>

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/HueCounting_p.h>
#include <KxUI/scopes/ScopeScratch_p.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostWaveformColumns = 16384;
constexpr int MostVectorCells = 1024;
// Columns of a strip: their counters fit the second level of the cache. Rows of a band: units enough
// for all threads.
constexpr int StripColumns = 96;
constexpr int BandRows = 32;
constexpr int RowsAhead = 8;

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

} // namespace

ScopePass::ScopePass(ScopeImage image, const ScopeRequest& request, int unitSize)
    : m_image(std::move(image))
    , m_request(normalized(request))
    , m_reader(m_image, m_request.encoding) {
    cutRegion();
    const int channels = m_request.waveform.channels;
    const bool waveform = wants(ScopeRequest::Waveform);
    if (waveform)
        makeWaveform();
    m_strips = waveform && !m_request.waveform.byRows;
    m_derives = wants(ScopeRequest::Values) || wants(ScopeRequest::Vectors) ||
                (waveform && (channels & WaveformRange::YCbCr) != 0);
    const int columns = waveform ? m_waveform.columns : m_y.end - m_y.begin;
    const int pixels = m_strips ? m_x.end - m_x.begin : m_y.end - m_y.begin;
    const int wanted = unitSize > 0 ? unitSize : m_strips ? StripColumns : BandRows;
    m_fold = std::size_t(columns > 0 ? (pixels + columns - 1) / columns : 1);
    m_unitSize = std::max(wanted / int(m_fold), 1);
    m_units = m_x.begin < m_x.end ? (columns + m_unitSize - 1) / m_unitSize : 0;
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
    scratch->legal = LegalCounts();
    scratch->pixels = 0;
    scratch->transparent = 0;
}

void ScopePass::count(int unit, Scratch& scratch) {
    const int first = unit * m_unitSize;
    const bool waveform = wants(ScopeRequest::Waveform);
    const int columns = waveform ? m_waveform.columns : m_y.end - m_y.begin;
    const Span part{first, std::min(first + m_unitSize, columns)};
    Span pixels = part;
    if (waveform) {
        scratch.strip.begin(m_waveform, part.begin, part.end);
        scratch.placesBegin = -1;
        pixels = {m_waveform.firstPixel(part.begin), m_waveform.firstPixel(part.end)};
    }
    const Span x = m_strips ? Span{m_x.begin + pixels.begin, m_x.begin + pixels.end} : m_x;
    const Span y = m_strips ? m_y : Span{m_y.begin + pixels.begin, m_y.begin + pixels.end};
    // Of the rows of the whole region, not of the unit, every so many are counted.
    const int step = m_request.rowStep;
    const int start = y.begin + (step - (y.begin - m_y.begin) % step) % step;
    for (int row = start; row < y.end; row += step)
        countRow(row, y, x, scratch);
    if (waveform)
        scratch.strip.empty(m_waveform);
}

void ScopePass::countRow(int y, Span rows, Span pixels, Scratch& scratch) {
    const int ahead = y + RowsAhead * m_request.rowStep;
    for (int x = pixels.begin; x < pixels.end;) {
        const int count = std::min(pixels.end - x, int(PixelPiece::Most));
        if (m_strips && ahead < rows.end)
            m_reader.prefetch(x, ahead, std::size_t(count));
        PixelPiece& piece = scratch.piece;
        m_reader.read(x, y, std::size_t(count), piece);
        scratch.pixels += piece.count;
        scratch.transparent += piece.transparent;
        derive(scratch);
        if (wants(ScopeRequest::Values))
            countValues(scratch);
        if (wants(ScopeRequest::Waveform))
            countWaveform(y, x, scratch);
        if (wants(ScopeRequest::Vectors))
            countVectors(scratch);
        if (wants(ScopeRequest::Solid))
            countSolid(scratch);
        if (wants(ScopeRequest::Hues))
            countHues(scratch);
        x += count;
    }
}

void ScopePass::derive(Scratch& scratch) const {
    PixelPiece& piece = scratch.piece;
    if (m_derives)
        countingKernels().yCbCr(piece.colors(), piece.count, m_request.encoding.matrix,
                                {piece.luma.data(), piece.cb.data(), piece.cr.data()});
}

void ScopePass::countValues(Scratch& scratch) const {
    const CountingKernels& kernels = countingKernels();
    PixelPiece& piece = scratch.piece;
    const ColorPlanes colors = piece.colors();
    kernels.legal(colors, piece.luma.data(), piece.count, scratch.legal);
    if (wants(ScopeHistogram::Largest))
        kernels.largest(colors, piece.count, piece.largest.data());
    const std::array<const float*, ScopeHistogram::Channels> planes{
        colors.red,     colors.green,      colors.blue,
        piece.alphas(), piece.luma.data(), piece.largest.data()};
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        const auto channel = Values(i);
        if (!wants(channel))
            continue;
        const CodeAxis codes = axis(channel);
        // An alpha of two bits has no room for the colours' codes.
        if (codes.isHalf())
            kernels.halfCodes(planes[channel], piece.count, piece.codes.data());
        else
            kernels.unitCodes(planes[channel], piece.count, float(codes.unit), piece.codes.data());
        std::uint32_t* const counts = scratch.codes[channel].data();
        for (std::size_t k = 0; k < piece.count; ++k)
            ++counts[piece.codes[k]];
        if (ExactSums* const sums = scratch.sums[channel].get()) {
            for (std::size_t k = 0; k < piece.count; ++k) {
                if (std::isfinite(planes[channel][k]))
                    sums->add(planes[channel][k]);
            }
        }
    }
}

// Where the counters of the pixels' columns are. Pixels that are not there are taken from the number
// of their column's pixels.
const std::uint32_t* ScopePass::placesOf(int y, int x, Scratch& scratch) {
    const PixelPiece& piece = scratch.piece;
    const std::size_t all = piece.count + piece.transparent;
    const auto column = [this, y, x](std::size_t place) {
        const int pixel = m_strips ? x - m_x.begin + int(place) : y - m_y.begin;
        return m_columnOf[std::size_t(pixel)];
    };
    // In a strip every row has the same.
    if (!m_strips || piece.transparent > 0 || scratch.placesBegin != x ||
        scratch.placesCount != all) {
        for (std::size_t i = 0; i < piece.count; ++i)
            scratch.places[i] = scratch.strip.place(int(column(piece.place[i])));
        scratch.placesBegin = piece.transparent > 0 ? -1 : x;
        scratch.placesCount = all;
    }
    if (piece.transparent > 0) {
        for (std::size_t i = 0; i < all; ++i)
            --m_waveform.columnPixels[column(i)];
        for (std::size_t i = 0; i < piece.count; ++i)
            ++m_waveform.columnPixels[column(piece.place[i])];
    }
    return scratch.places.data();
}

void ScopePass::countWaveform(int y, int x, Scratch& scratch) {
    const CountingKernels& kernels = countingKernels();
    PixelPiece& piece = scratch.piece;
    const std::uint32_t* const places = placesOf(y, x, scratch);
    scratch.strip.expect(m_strips ? m_fold : piece.count, m_waveform);
    const ColorPlanes colors = piece.colors();
    const std::array<const float*, ScopeWaveform::Channels> planes{
        colors.red, colors.green, colors.blue, piece.luma.data(), piece.cb.data(), piece.cr.data()};
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = Waveform(i);
        if (!m_waveform.has(channel))
            continue;
        kernels.bins(planes[channel], piece.count, m_waveform.range(channel), piece.codes.data());
        scratch.strip.add(channel, piece.codes.data(), places, piece.count);
    }
}

void ScopePass::countVectors(Scratch& scratch) const {
    PixelPiece& piece = scratch.piece;
    const VectorSlots slot(m_request.vectors.chroma.bins);
    countingKernels().vectorCells(piece.colors(),
                                  {piece.luma.data(), piece.cb.data(), piece.cr.data()},
                                  piece.count, m_request.vectors, scratch.cells.data());
    std::uint32_t* const counts = scratch.vectors.data();
    const std::uint32_t before = counts[slot.outside()];
    for (std::size_t i = 0; i < piece.count; ++i)
        ++counts[scratch.cells[i]];
    if (counts[slot.outside()] == before)
        return;
    for (std::size_t i = 0; i < piece.count; ++i) {
        if (scratch.cells[i] == slot.outside())
            scratch.addDirection(piece.cb[i], piece.cr[i]);
    }
}

void ScopePass::countSolid(Scratch& scratch) const {
    const PixelPiece& piece = scratch.piece;
    countingKernels().solidCells(piece.colors(), piece.count, m_request.solid,
                                 scratch.cells.data());
    std::uint32_t* const counts = scratch.solid.data();
    for (std::size_t i = 0; i < piece.count; ++i)
        ++counts[scratch.cells[i]];
}

void ScopePass::countHues(Scratch& scratch) const {
    const PixelPiece& piece = scratch.piece;
    std::array<std::uint16_t, PixelPiece::Room> hues;
    std::array<std::uint16_t, PixelPiece::Room> saturations;
    hueSlots(piece.colors(), piece.count, hues.data(), saturations.data());
    std::uint32_t* const ofHues = scratch.hues.data();
    std::uint32_t* const ofSaturations = scratch.saturations.data();
    for (std::size_t i = 0; i < piece.count; ++i) {
        ++ofHues[hues[i]];
        ++ofSaturations[saturations[i]];
    }
}

} // namespace Kestrel::UI
