#pragma once

#include "media/DisplayTable.h"

#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** How the numbers of samples are to be read. */
struct SampleFormat {
    enum class Type { Byte, Integer16, Half };

    Type type = Type::Byte;
    Encoding encoding = Encoding::Display;

    bool operator==(const SampleFormat& other) const {
        return type == other.type && encoding == other.encoding;
    }
};

/** The number that a sample is: 0-1 of integers. */
double valueOf(SampleFormat::Type type, std::uint16_t sample);

/** The light that a sample stands for: 0 is black, 1 white. */
double lightOf(const SampleFormat& format, std::uint16_t sample);

/** A picture as its file has it, where that is more than the codes of a screen. */
struct Samples {
    SampleFormat format;
    /** Red, green and blue of each pixel of the display window, row by row from the top; half
        floats by their bits. */
    std::vector<std::uint16_t> rgb;
};

} // namespace Kestrel::Workbench
