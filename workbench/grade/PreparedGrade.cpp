#include "grade/PreparedGrade.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr unsigned int curveEntries = 65536;

/** From each signal, in 65,535ths, to its code by the curves: four codes an entry. */
std::vector<unsigned short> curveTable(const UI::Curves& curves) {
    std::vector<unsigned short> table(std::size_t(curveEntries) * 4);
    curves.buildRGBALUT(curveEntries, table.data());
    return table;
}

std::size_t curveEntry(double signal) {
    return std::size_t(std::lround(std::min(signal, 1.0) * (curveEntries - 1)));
}

std::uint8_t screenCode(unsigned short code) {
    return std::uint8_t((code * 255U + 32767U) / 65535U);
}

} // namespace

GradeTables::GradeTables(const Grade& grade, const SampleFormat& format)
    : m_grade(grade)
    , m_light(format.type == SampleFormat::Type::Byte ? 256 : 65536)
    , m_balanced(!grade.balance.isNeutral()) {
    for (std::size_t i = 0; i < m_light.size(); ++i)
        m_light[i] = lightOf(format, std::uint16_t(i));
    if (!grade.curvesAreIdentity())
        m_curves = curveTable(grade.curves);
}

std::uint8_t GradeTables::codeOf(double light, std::size_t channel) const {
    double signal = 1.0;
    // What is brighter than white is seen only where a balance brings it back. Else this saves most
    // of the powers: half of all half floats are above white.
    if (m_balanced)
        signal = m_grade.balance.applied(srgbSignal(light), channel);
    else if (!(light >= 1.0))
        signal = srgbSignal(light);
    return m_curves.empty() ? Workbench::screenCode(signal)
                            : screenCode(m_curves[curveEntry(signal) * 4 + channel]);
}

PreparedGrade::PreparedGrade(const Grade& grade, const SampleFormat& format)
    : PreparedGrade(GradeTables(grade, format), grade.exposure) {}

PreparedGrade::PreparedGrade(const GradeTables& tables, float stops)
    : m_preview(tables.m_grade.preview) {
    const Factors factors = tables.m_grade.lightFactors(stops);
    for (std::size_t channel = 0; channel < m_codes.size(); ++channel) {
        std::vector<std::uint8_t>& codes = m_codes[channel];
        codes.resize(tables.m_light.size());
        for (std::size_t i = 0; i < codes.size(); ++i)
            codes[i] = tables.codeOf(tables.m_light[i] * double(factors[channel]), channel);
    }
}

void PreparedGrade::gradeRow(const std::uint16_t* rgb, QRgb* to, int pixels) const {
    const std::uint8_t* red = m_codes[0].data();
    const std::uint8_t* green = m_codes[1].data();
    const std::uint8_t* blue = m_codes[2].data();
    for (int x = 0; x < pixels; ++x, rgb += 3)
        to[x] = qRgb(red[rgb[0]], green[rgb[1]], blue[rgb[2]]);
    preview(to, pixels);
}

void PreparedGrade::gradeRow(const QRgb* from, QRgb* to, int pixels) const {
    const std::uint8_t* red = m_codes[0].data();
    const std::uint8_t* green = m_codes[1].data();
    const std::uint8_t* blue = m_codes[2].data();
    for (int x = 0; x < pixels; ++x)
        to[x] = qRgb(red[qRed(from[x])], green[qGreen(from[x])], blue[qBlue(from[x])]);
    preview(to, pixels);
}

/** Stores pixels as 8-bit 4:2:2 and reads them back. */
void PreparedGrade::preview(QRgb* pixels, int count) const {
    if (m_preview == Grade::NoPreview)
        return;
    const UI::PixelLayout layout = previewLayout(m_preview);
    std::vector<float> planes(std::size_t(count) * 3);
    UI::PlanarRow row;
    row.red = planes.data();
    row.green = row.red + count;
    row.blue = row.green + count;
    std::vector<std::uint8_t> packed(UI::rowBytes(layout, count));
    // Screen pixels are blue, green, red and alpha in the memory of little-endian machines.
    UI::decodeRow(UI::PixelLayout::BGRA8, pixels, row, count);
    UI::encodeRow(layout, row, count, packed.data(), UI::colorSpaceRgbToYCbCr(m_preview));
    UI::decodeRow(layout, packed.data(), row, count, UI::colorSpaceYCbCrToRgb(m_preview));
    UI::encodeRow(UI::PixelLayout::BGRA8, row, count, pixels);
}

UI::PixelLayout previewLayout(int option) {
    using UI::PixelLayout;
    // The legacy options differ in the range of their codes.
    const bool legacy = option == UI::rowColorSpace(PixelLayout::CbYCrY8LegacyMpeg);
    return legacy ? PixelLayout::CbYCrY8LegacyMpeg : PixelLayout::CbYCrY8;
}

} // namespace Kestrel::Workbench
