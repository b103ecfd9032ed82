#pragma once

#include <QImage>

#include <array>
#include <cstdint>

namespace Kestrel::Workbench {

/** How often a picture has each 8-bit code, by red, green and blue. A plain value. */
struct Histogram {
    using Counts = std::array<std::uint32_t, 256>;

    std::array<Counts, 3> channels{};

    /** Of a picture in Format_RGB32; of a large one, of rows that lie evenly in it, so that it takes
        no more than some milliseconds. Nothing is counted of any other picture. */
    static Histogram of(const QImage& picture);
};

} // namespace Kestrel::Workbench
