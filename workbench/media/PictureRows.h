#pragma once

#include "media/DisplayTable.h"
#include "media/Samples.h"

#include <QImage>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** A rectangle in 64 bits: a damaged header may claim any 32-bit origin and size. */
struct PixelWindow {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;

    std::int64_t right() const { return x + width; }
    std::int64_t bottom() const { return y + height; }
};

/** A row of a file's samples: red, green and blue of the first pixel, and from one pixel to the
    next. Planes have a step of 1. */
template <typename Sample>
struct SampleRow {
    const Sample* red = nullptr;
    const Sample* green = nullptr;
    const Sample* blue = nullptr;
    std::size_t step = 1;
};

/** Takes the rows of a file in and makes the picture of them: codes for the screen, averaged where
    the picture is smaller than the file, and the samples themselves where they are kept. Rows come
    from top to bottom; what lies outside the display window is left out. */
class PictureRows {
public:
    /** @param image  borrowed; the display window divided by `factor`, rounded up
        @param data  where the file has pixels
        @param table  from 16-bit samples to codes; null where they are codes already, of 8 or of 16
               bits
        @param kept  borrowed; takes the samples of the display window, and may be null */
    PictureRows(QImage* image, int factor, const PixelWindow& data, const PixelWindow& display,
                const DisplayTable* table, Samples* kept);

    /** Row y of the data window, from its left edge to its right one. */
    void add(std::int64_t y, const SampleRow<std::uint16_t>& row);
    void add(std::int64_t y, const SampleRow<std::uint8_t>& row);

    /** After the last row. */
    void finish();

private:
    template <typename Sample, typename Code>
    void convert(std::int64_t y, SampleRow<Sample> row, Code codeOf);
    template <typename Sample, typename Code>
    void average(std::int64_t row, const SampleRow<Sample>& from, Code codeOf);
    void keep(std::int64_t y, SampleRow<std::uint16_t> row);
    bool isShown(std::int64_t y) const;
    void flush();

    QImage& m_image;
    const int m_factor;
    const PixelWindow m_data;
    const PixelWindow m_display;
    const DisplayTable* m_table;
    Samples* m_kept;
    /** The pixels of both windows. */
    std::int64_t m_left;
    std::int64_t m_right;
    /** Row of the picture whose blocks are being summed; -1 for none. */
    std::int64_t m_row = -1;
    std::vector<std::uint64_t> m_sums;
    std::vector<std::uint64_t> m_counts;
};

} // namespace Kestrel::Workbench
