#pragma once

#include "grade/Grade.h"
#include "media/Samples.h"

#include <QRgb>

#include <array>
#include <cstdint>
#include <vector>

namespace Kestrel::Workbench {

/** What a grade makes of all frames of one format, whatever their exposure: the light that samples
    stand for, and what balance and curves make of a signal. Any number of threads may use one. */
class GradeTables {
public:
    /** Takes some milliseconds. */
    GradeTables(const Grade& grade, const SampleFormat& format);

private:
    friend class PreparedGrade;

    std::uint8_t codeOf(double light, std::size_t channel) const;
    double signalOf(double light, std::size_t channel) const;

    Grade m_grade;
    /** Of each sample. */
    std::vector<double> m_light;
    /** From each signal, in 65,535ths, four codes; empty where the curves change nothing. */
    std::vector<unsigned short> m_curves;
    bool m_balanced;
};

/** A grade made ready for all frames of one format and one exposure: gain, exposure, the transfer
    to the screen, the balance and the curves are one table a channel, from each sample to its 8-bit
    code, and if asked for another one to its signal. Any number of threads may use one. */
class PreparedGrade {
public:
    /** Whether the signal can be told as well, which takes as long again. */
    enum Results { Codes, CodesAndSignal };

    /** Take some milliseconds. The first is for the exposure of a grade without keys. */
    PreparedGrade(const Grade& grade, const SampleFormat& format, Results results = Codes);
    PreparedGrade(const GradeTables& tables, float stops, Results results = Codes);

    /** From red, green and blue samples, of a 16-bit format, to opaque screen pixels. */
    void gradeRow(const std::uint16_t* rgb, QRgb* to, int pixels) const;

    /** From screen pixels, of the format of bytes. */
    void gradeRow(const QRgb* from, QRgb* to, int pixels) const;

    /** The same, to red, green and blue of the screen's signal as half floats: not rounded to codes,
        and brighter than white where the curves let it. Light below 0 keeps its sign, and what is no
        number stays so, as far as the grade leaves them alone. Needs CodesAndSignal. */
    void signalRow(const std::uint16_t* rgb, std::uint16_t* to, int pixels) const;
    void signalRow(const QRgb* from, std::uint16_t* to, int pixels) const;

private:
    void preview(UI::PixelLayout own, void* pixels, int count) const;

    /** By red, green and blue. */
    std::array<std::vector<std::uint8_t>, 3> m_codes;
    /** Half floats of red, green and blue for each sample; empty if they were not asked for. */
    std::vector<std::uint16_t> m_signals;
    int m_preview;
};

/** The layout of 8-bit 4:2:2 that pixels of a YCbCr option are stored in. */
UI::PixelLayout previewLayout(int option);

} // namespace Kestrel::Workbench
