#pragma once

#include "grade/Grade.h"
#include "media/Samples.h"

#include <QRgb>

#include <array>
#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** A grade made ready for all frames of one format: gain, exposure, the transfer to the screen and
    the curves are one table a channel, from each sample to its 8-bit code. Any number of threads
    may use one. */
class PreparedGrade {
public:
    /** Takes some milliseconds. */
    PreparedGrade(const Grade& grade, const SampleFormat& format);

    /** From red, green and blue samples, of a 16-bit format, to opaque screen pixels. */
    void gradeRow(const std::uint16_t* rgb, QRgb* to, int pixels) const;

    /** From screen pixels, of the format of bytes. */
    void gradeRow(const QRgb* from, QRgb* to, int pixels) const;

private:
    void preview(QRgb* pixels, int count) const;

    /** By red, green and blue. */
    std::array<std::vector<std::uint8_t>, 3> m_codes;
    int m_preview;
};

/** The layout of 8-bit 4:2:2 that pixels of a YCbCr option are stored in. */
UI::PixelLayout previewLayout(int option);

} // namespace Kestrel::Workbench
