#pragma once

#include "export/ExportPlan.h"
#include "media/Samples.h"

#include <QRgb>

#include <array>
#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** A grade made ready for files: from each sample of one format, at one exposure, to what is written.
    For EXR that is light, by its half float: what is brighter than white and what is negative stays
    as long as neither balance nor curves change it. For PNG it is the code that a screen shows.

    What the YCbCr preview does to the picture is a look at another way of keeping it, and is not
    written. Any number of threads may use one. */
class ExportTables {
public:
    /** Takes some milliseconds. */
    ExportTables(const Grade& grade, const SampleFormat& format, float stops, ExportFormat target);

    /** Whether it was made for such frames. */
    bool isFor(const SampleFormat& format, float stops) const {
        return format == m_format && stops == m_stops;
    }

    /** From red, green and blue samples, of a 16-bit format, to three numbers a pixel: bytes for
        Png8, else 16 bits. */
    template <typename Out>
    void convert(const std::uint16_t* rgb, Out* to, std::size_t pixels) const {
        for (std::size_t i = 0; i < pixels; ++i, rgb += 3, to += 3) {
            for (std::size_t c = 0; c < 3; ++c)
                to[c] = Out(m_table[c][rgb[c]]);
        }
    }

    /** From screen pixels, of the format of bytes. */
    template <typename Out>
    void convert(const QRgb* from, Out* to, std::size_t pixels) const {
        for (std::size_t i = 0; i < pixels; ++i, to += 3) {
            to[0] = Out(m_table[0][std::size_t(qRed(from[i]))]);
            to[1] = Out(m_table[1][std::size_t(qGreen(from[i]))]);
            to[2] = Out(m_table[2][std::size_t(qBlue(from[i]))]);
        }
    }

private:
    SampleFormat m_format;
    float m_stops;
    /** By red, green and blue. */
    std::array<std::vector<std::uint16_t>, 3> m_table;
};

} // namespace Kestrel::Workbench
