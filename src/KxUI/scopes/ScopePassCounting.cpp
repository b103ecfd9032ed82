// What a pass does with the pixels of a unit.

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/HueCounting_p.h>
#include <KxUI/scopes/ScopePass_p.h>
#include <KxUI/scopes/ScopeScratch_p.h>
#include <KxUI/scopes/Tally_p.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Kestrel::UI {
namespace {

using Waveform = ScopeWaveform::Channel;
using Values = ScopeHistogram::Channel;

constexpr std::size_t PartPixels = 96;

// Flat pieces are frequent: an alpha that is not used, bars above and below a film.
bool areAllTheSame(const std::uint16_t* codes, std::size_t count) {
    return count > 0 && codes[0] == codes[count - 1] && codes[0] == codes[count / 2] &&
           std::memcmp(codes, codes + 1, (count - 1) * sizeof *codes) == 0;
}

bool isChroma(Waveform channel) {
    return channel == ScopeWaveform::Cb || channel == ScopeWaveform::Cr;
}

} // namespace

void ScopePass::count(int unit, Scratch& scratch) {
    const int first = unit * m_unitSize;
    const bool waveform = wants(ScopeRequest::Waveform);
    const int columns = waveform ? m_waveform.columns : m_y.end - m_y.begin;
    const Span part{first, std::min(first + m_unitSize, columns)};
    Span pixels = part;
    if (waveform) {
        scratch.strip.begin(m_waveform, part.begin, part.end);
        scratch.places.known = false;
        pixels = {m_waveform.firstPixel(part.begin), m_waveform.firstPixel(part.end)};
    }
    const Span x = m_strips ? Span{m_x.begin + pixels.begin, m_x.begin + pixels.end} : m_x;
    const Span y = m_strips ? m_y : Span{m_y.begin + pixels.begin, m_y.begin + pixels.end};
    // Of the rows of the whole region, not of the unit, every so many are counted.
    const int step = m_request.rowStep;
    const int start = y.begin + (step - (y.begin - m_y.begin) % step) % step;
    const int rows = rowsAtOnce(x);
    for (int row = start; row < y.end; row += rows * step) {
        const int left = (y.end - row + step - 1) / step;
        const PixelBlock block{x.begin, row, std::size_t(x.end - x.begin), std::min(rows, left),
                               step};
        countRows(block, y, scratch);
    }
    if (waveform)
        scratch.strip.empty(m_waveform);
}

// Rows of narrow strips are read several at a time, so that what is done for each piece is done less
// often. In a waveform by rows, pixels of several rows would not be of one column.
int ScopePass::rowsAtOnce(Span pixels) const {
    const auto width = std::size_t(pixels.end - pixels.begin);
    const bool byRows = wants(ScopeRequest::Waveform) && !m_strips;
    if (byRows || !m_reader.readsSeveralRows(pixels.begin, width))
        return 1;
    return std::max(int(PixelPiece::Most / width), 1);
}

void ScopePass::countRows(const PixelBlock& rows, Span rowsOfUnit, Scratch& scratch) {
    const int end = rows.x + int(rows.width);
    const auto most = PixelPiece::Most / std::size_t(rows.rows);
    for (int x = rows.x; x < end;) {
        PixelBlock block = rows;
        block.x = x;
        block.width = std::min(std::size_t(end - x), most);
        m_reader.read(block, scratch.piece);
        scratch.pixels += scratch.piece.count;
        scratch.transparent += scratch.piece.transparent;
        PixelBlock next = block;
        next.x = x + int(block.width) < end ? x + int(block.width) : rows.x;
        if (next.x <= x)
            next.y += rows.rows * rows.step;
        scratch.next = next.y < rowsOfUnit.end ? m_reader.memory(next) : PixelMemory();
        compute(block, scratch);
        addPiece(scratch);
        x += int(block.width);
    }
}

// ---- Which counters the pixels add to.

void ScopePass::compute(const PixelBlock& block, Scratch& scratch) {
    const CountingKernels& kernels = countingKernels();
    PixelPiece& piece = scratch.piece;
    const YCbCrPlanes derived{piece.luma.data(), m_derivesChroma ? piece.cb.data() : nullptr,
                              m_derivesChroma ? piece.cr.data() : nullptr};
    if (m_derivesLuma)
        kernels.yCbCr(piece.colors(), piece.count, m_request.encoding.matrix, derived);
    if (wants(ScopeRequest::Values))
        computeValues(scratch);
    if (wants(ScopeRequest::Waveform))
        computeWaveform(block, scratch);
    if (wants(ScopeRequest::Vectors))
        kernels.vectorCells(piece.colors(), derived, piece.count, m_request.vectors,
                            scratch.vectorCells.data());
    if (wants(ScopeRequest::Solid))
        kernels.solidCells(piece.colors(), piece.count, m_request.solid, scratch.solidCells.data());
    if (wants(ScopeRequest::Hues))
        hueSlots(piece.colors(), piece.count, scratch.hueCodes.data(),
                 scratch.saturationCodes.data());
}

void ScopePass::computeValues(Scratch& scratch) const {
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
        std::uint16_t* const to = scratch.valueCodes[channel].data();
        // An alpha of two bits has no room for the colours' codes.
        if (codes.isHalf())
            kernels.halfCodes(planes[channel], piece.count, to);
        else
            kernels.unitCodes(planes[channel], piece.count, float(codes.unit), to);
        if (ExactSums* const sums = scratch.sums[channel].get()) {
            for (std::size_t k = 0; k < piece.count; ++k) {
                if (std::isfinite(planes[channel][k]))
                    sums->add(planes[channel][k]);
            }
        }
    }
}

std::uint32_t ScopePass::columnOf(const PixelBlock& block, std::size_t place) const {
    const int pixel = m_strips ? block.x - m_x.begin + int(place) : block.y - m_y.begin;
    return m_columnOf[std::size_t(pixel)];
}

// Where the counters of the pixels' columns are.
void ScopePass::computePlaces(const PixelBlock& block, Scratch& scratch) const {
    const PixelPiece& piece = scratch.piece;
    Scratch::Places& places = scratch.places;
    // In a strip every row has the same.
    if (places.known && m_strips && piece.transparent == 0 && places.x == block.x &&
        places.width == block.width && places.count >= piece.count)
        return;
    for (std::size_t i = 0; i < piece.count; ++i) {
        const int column = int(columnOf(block, piece.place(i)));
        places.luma[i] = scratch.strip.place(ScopeWaveform::Red, column);
        places.chroma[i] = scratch.strip.place(ScopeWaveform::Cb, column);
    }
    places.known = piece.transparent == 0;
    places.x = block.x;
    places.width = block.width;
    places.count = piece.count;
}

// Pixels that are not there are taken from the number of their column's pixels.
void ScopePass::takeFromColumns(const PixelBlock& block, const PixelPiece& piece) {
    for (std::size_t i = 0; i < piece.count + piece.transparent; ++i)
        --m_waveform.columnPixels[columnOf(block, i % block.width)];
    for (std::size_t i = 0; i < piece.count; ++i)
        ++m_waveform.columnPixels[columnOf(block, piece.place(i))];
}

void ScopePass::computeWaveform(const PixelBlock& block, Scratch& scratch) {
    const PixelPiece& piece = scratch.piece;
    computePlaces(block, scratch);
    if (piece.transparent > 0)
        takeFromColumns(block, piece);
    const std::size_t hits = m_strips ? m_fold * std::size_t(block.rows) : piece.count;
    scratch.strip.expect(std::min(hits, piece.count), m_waveform);
    const ColorPlanes colors = piece.colors();
    const std::array<const float*, ScopeWaveform::Channels> planes{
        colors.red, colors.green, colors.blue, piece.luma.data(), piece.cb.data(), piece.cr.data()};
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = Waveform(i);
        if (!m_waveform.has(channel))
            continue;
        const auto& places = isChroma(channel) ? scratch.places.chroma : scratch.places.luma;
        countingKernels().bins(planes[channel], piece.count, m_waveform.range(channel),
                               places.data(), scratch.waveformCounters[channel].data());
    }
}

// ---- Counting.

// Calls `add(first, count)` for parts of the pixels. Before each some of the pixels that are read next
// are asked for: the processor has more to do than to wait for them then, and it has few questions
// open at a time.
template <class Add>
void ScopePass::inParts(Scratch& scratch, Add add) {
    for (std::size_t at = 0; at < scratch.piece.count; at += PartPixels) {
        scratch.next.ask(scratch.linesAtOnce);
        add(at, std::min(PartPixels, scratch.piece.count - at));
    }
}

void ScopePass::addPiece(Scratch& scratch) const {
    const std::size_t parts = scratch.piece.count / PartPixels + 1;
    scratch.linesAtOnce = scratch.next.lines() / (parts * m_countersOfPixel) + 1;
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        const auto channel = Values(i);
        if (wants(ScopeRequest::Values) && wants(channel))
            addCodes(channel, scratch);
    }
    for (int i = 0; i < ScopeWaveform::Channels; ++i) {
        const auto channel = Waveform(i);
        if (!m_waveform.has(channel))
            continue;
        const std::uint16_t* const counters = scratch.waveformCounters[channel].data();
        inParts(scratch, [&](std::size_t first, std::size_t count) {
            scratch.strip.add(channel, counters + first, count);
        });
    }
    if (wants(ScopeRequest::Vectors))
        addVectorCells(scratch);
    if (wants(ScopeRequest::Solid)) {
        inParts(scratch, [&scratch](std::size_t first, std::size_t count) {
            tally(scratch.solid.data(), scratch.solidCells.data() + first, count);
        });
    }
    if (wants(ScopeRequest::Hues)) {
        inParts(scratch, [&scratch](std::size_t first, std::size_t count) {
            tally(scratch.hues.data(), scratch.hueCodes.data() + first, count);
            tally(scratch.saturations.data(), scratch.saturationCodes.data() + first, count);
        });
    }
}

void ScopePass::addCodes(ScopeHistogram::Channel channel, Scratch& scratch) const {
    const std::uint16_t* const codes = scratch.valueCodes[channel].data();
    const std::size_t count = scratch.piece.count;
    std::uint32_t* const counts = scratch.codes[channel].data();
    if (areAllTheSame(codes, count))
        counts[codes[0]] += std::uint32_t(count);
    else
        inParts(scratch, [counts, codes](std::size_t first, std::size_t size) {
            tally(counts, codes + first, size);
        });
}

void ScopePass::addVectorCells(Scratch& scratch) const {
    const PixelPiece& piece = scratch.piece;
    const VectorSlots slot(m_request.vectors.chroma.bins);
    std::uint32_t* const counts = scratch.vectors.data();
    const std::uint32_t before = counts[slot.outside()];
    inParts(scratch, [counts, &scratch](std::size_t first, std::size_t count) {
        tally(counts, scratch.vectorCells.data() + first, count);
    });
    if (counts[slot.outside()] == before)
        return;
    for (std::size_t i = 0; i < piece.count; ++i) {
        if (scratch.vectorCells[i] == slot.outside())
            scratch.addDirection(piece.cb[i], piece.cr[i]);
    }
}

} // namespace Kestrel::UI
