#include "media/PictureRows.h"

#include <KxUI/color/ColorConversions.h>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

/** The row without its first pixels. */
template <typename Sample>
SampleRow<Sample> from(SampleRow<Sample> row, std::int64_t pixels) {
    const auto samples = std::ptrdiff_t(row.step) * std::ptrdiff_t(pixels);
    row.red += samples;
    row.green += samples;
    row.blue += samples;
    return row;
}

/** The nearest of 256 codes. Equals rounding of code / 257 for every code. */
std::uint8_t codeOf16(std::uint16_t code) {
    const std::uint32_t near = code + 128U;
    return std::uint8_t((near - (near >> 8)) >> 8);
}

constexpr UI::PixelLayout packedLayout(const std::uint8_t* /*samples*/) {
    return UI::PixelLayout::RGB8;
}

constexpr UI::PixelLayout packedLayout(const std::uint16_t* /*samples*/) {
    return UI::PixelLayout::RGB16;
}

/** The library's vector loops, for samples that lie as they take them. False for others. */
template <typename Sample>
bool paintPacked(const SampleRow<Sample>& row, QRgb* to, std::size_t pixels) {
    if (row.step != 3 || row.green != row.red + 1 || row.blue != row.red + 2)
        return false;
    // Few enough for the nearest cache.
    constexpr std::size_t most = 1024;
    std::array<float, most * 3> planes;
    UI::PlanarRow floats;
    floats.red = planes.data();
    floats.green = floats.red + most;
    floats.blue = floats.green + most;
    for (std::size_t x = 0; x < pixels; x += most) {
        const int count = int(std::min(most, pixels - x));
        UI::decodeRow(packedLayout(row.red), row.red + x * 3, floats, count);
        // Screen pixels are blue, green, red and alpha in the memory of little-endian machines.
        UI::encodeRow(UI::PixelLayout::BGRA8, floats, count, to + x);
    }
    return true;
}

/** A loop of its own for planes, which the compiler can take several pixels at a time. */
template <typename Sample, typename Code>
void paintRow(const SampleRow<Sample>& row, QRgb* to, std::size_t pixels, Code codeOf) {
    if (row.step == 1) {
        for (std::size_t x = 0; x < pixels; ++x)
            to[x] = qRgb(codeOf(row.red[x]), codeOf(row.green[x]), codeOf(row.blue[x]));
        return;
    }
    for (std::size_t x = 0, i = 0; x < pixels; ++x, i += row.step)
        to[x] = qRgb(codeOf(row.red[i]), codeOf(row.green[i]), codeOf(row.blue[i]));
}

} // namespace

PictureRows::PictureRows(QImage* image, int factor, const PixelWindow& data,
                         const PixelWindow& display, const DisplayTable* table, Samples* kept)
    : m_image(*image)
    , m_factor(factor)
    , m_data(data)
    , m_display(display)
    , m_table(table)
    , m_kept(kept)
    , m_left(std::max(data.x, display.x))
    , m_right(std::min(data.right(), display.right())) {
    if (factor > 1) {
        m_sums.resize(std::size_t(image->width()) * 3);
        m_counts.resize(std::size_t(image->width()));
    }
}

void PictureRows::add(std::int64_t y, const SampleRow<std::uint16_t>& row) {
    if (!isShown(y))
        return;
    if (m_table)
        convert(y, row, [&table = *m_table](std::uint16_t sample) { return table[sample]; });
    else
        convert(y, row, codeOf16);
    if (m_kept)
        keep(y, row);
}

void PictureRows::add(std::int64_t y, const SampleRow<std::uint8_t>& row) {
    if (isShown(y))
        convert(y, row, [](std::uint8_t sample) { return sample; });
}

void PictureRows::finish() {
    flush();
}

bool PictureRows::isShown(std::int64_t y) const {
    return y >= m_display.y && y < m_display.bottom() && m_left < m_right;
}

template <typename Sample, typename Code>
void PictureRows::convert(std::int64_t y, SampleRow<Sample> row, Code codeOf) {
    row = from(row, m_left - m_data.x);
    if (m_factor > 1)
        return average(y - m_display.y, row, codeOf);
    auto* out =
        reinterpret_cast<QRgb*>(m_image.scanLine(int(y - m_display.y))) + (m_left - m_display.x);
    const auto pixels = std::size_t(m_right - m_left);
    if (m_table || !paintPacked(row, out, pixels))
        paintRow(row, out, pixels, codeOf);
}

/** Adds a row of the full display window to the sums of whole blocks of codes. */
template <typename Sample, typename Code>
void PictureRows::average(std::int64_t row, const SampleRow<Sample>& from, Code codeOf) {
    if (row / m_factor != m_row) {
        flush();
        m_row = row / m_factor;
    }
    std::size_t i = 0;
    for (std::int64_t x = m_left - m_display.x; x < m_right - m_display.x; ++x, i += from.step) {
        const auto cell = std::size_t(x / m_factor);
        m_sums[cell * 3] += codeOf(from.red[i]);
        m_sums[cell * 3 + 1] += codeOf(from.green[i]);
        m_sums[cell * 3 + 2] += codeOf(from.blue[i]);
        ++m_counts[cell];
    }
}

void PictureRows::keep(std::int64_t y, SampleRow<std::uint16_t> row) {
    row = from(row, m_left - m_data.x);
    auto* out = m_kept->rgb.data() +
                std::size_t((y - m_display.y) * m_display.width + m_left - m_display.x) * 3;
    const auto pixels = std::size_t(m_right - m_left);
    for (std::size_t x = 0, i = 0; x < pixels; ++x, i += row.step) {
        *out++ = row.red[i];
        *out++ = row.green[i];
        *out++ = row.blue[i];
    }
}

/** Writes the row that is being summed. */
void PictureRows::flush() {
    if (m_row < 0)
        return;
    auto* out = reinterpret_cast<QRgb*>(m_image.scanLine(int(m_row)));
    for (std::size_t x = 0; x < m_counts.size(); ++x) {
        if (const auto count = m_counts[x]; count > 0)
            out[x] = qRgb(int(m_sums[x * 3] / count), int(m_sums[x * 3 + 1] / count),
                          int(m_sums[x * 3 + 2] / count));
    }
    std::fill(m_sums.begin(), m_sums.end(), 0);
    std::fill(m_counts.begin(), m_counts.end(), 0);
    m_row = -1;
}

} // namespace Kestrel::Workbench
