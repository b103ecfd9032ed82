#include "grade/PreparedGrade.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr unsigned int curveEntries = 65536;
/** Screen pixels are blue, green, red and alpha in the memory of little-endian machines. */
constexpr UI::PixelLayout screenLayout = UI::PixelLayout::BGRA8;

/** From each signal, in 65,535ths, to its code by the curves: four codes an entry. */
std::vector<unsigned short> curveTable(const UI::Curves& curves) {
    std::vector<unsigned short> table(std::size_t(curveEntries) * 4);
    curves.buildRGBALUT(curveEntries, table.data());
    return table;
}

std::size_t curveEntry(double signal) {
    return std::size_t(std::lround(std::min(signal, 1.0) * (curveEntries - 1)));
}

/** Red, green and blue one after the other. */
UI::PlanarRow planarRow(float* planes, int count) {
    UI::PlanarRow row;
    row.red = planes;
    row.green = planes + count;
    row.blue = planes + 2 * std::ptrdiff_t(count);
    return row;
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

double GradeTables::signalOf(double light, std::size_t channel) const {
    if (std::isnan(light))
        return light;
    if (!m_balanced && m_curves.empty())
        return std::copysign(srgbSignal(std::abs(light)), light);
    const double signal =
        m_balanced ? m_grade.balance.applied(srgbSignal(light), channel) : srgbSignal(light);
    return m_curves.empty() ? signal : m_curves[curveEntry(signal) * 4 + channel] / 65535.0;
}

PreparedGrade::PreparedGrade(const Grade& grade, const SampleFormat& format, Results results)
    : PreparedGrade(GradeTables(grade, format), grade.exposure, results) {}

PreparedGrade::PreparedGrade(const GradeTables& tables, float stops, Results results)
    : m_preview(tables.m_grade.preview) {
    const Factors factors = tables.m_grade.lightFactors(stops);
    for (std::size_t channel = 0; channel < m_codes.size(); ++channel) {
        std::vector<std::uint8_t>& codes = m_codes[channel];
        codes.resize(tables.m_light.size());
        for (std::size_t i = 0; i < codes.size(); ++i)
            codes[i] = tables.codeOf(tables.m_light[i] * double(factors[channel]), channel);
    }
    if (results == Codes)
        return;
    const std::size_t count = tables.m_light.size();
    std::vector<float> planes(count * 3);
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const std::size_t channel = i / count;
        const double signal =
            tables.signalOf(tables.m_light[i % count] * double(factors[channel]), channel);
        // What is stored in 8 bits for the preview has nothing beyond them.
        const double limited = signal > 0.0 ? std::min(signal, 1.0) : 0.0;
        planes[i] = float(m_preview == Grade::NoPreview ? signal : limited);
    }
    m_signals.resize(count * 3);
    UI::encodeRow(UI::PixelLayout::RGBHalf, planarRow(planes.data(), int(count)), int(count),
                  m_signals.data());
}

void PreparedGrade::gradeRow(const std::uint16_t* rgb, QRgb* to, int pixels) const {
    const std::uint8_t* red = m_codes[0].data();
    const std::uint8_t* green = m_codes[1].data();
    const std::uint8_t* blue = m_codes[2].data();
    for (int x = 0; x < pixels; ++x, rgb += 3)
        to[x] = qRgb(red[rgb[0]], green[rgb[1]], blue[rgb[2]]);
    preview(screenLayout, to, pixels);
}

void PreparedGrade::gradeRow(const QRgb* from, QRgb* to, int pixels) const {
    const std::uint8_t* red = m_codes[0].data();
    const std::uint8_t* green = m_codes[1].data();
    const std::uint8_t* blue = m_codes[2].data();
    for (int x = 0; x < pixels; ++x)
        to[x] = qRgb(red[qRed(from[x])], green[qGreen(from[x])], blue[qBlue(from[x])]);
    preview(screenLayout, to, pixels);
}

void PreparedGrade::signalRow(const std::uint16_t* rgb, std::uint16_t* to, int pixels) const {
    for (int i = 0; i < 3 * pixels; ++i)
        to[i] = m_signals[std::size_t(rgb[i]) * 3 + std::size_t(i % 3)];
    preview(UI::PixelLayout::RGBHalf, to, pixels);
}

void PreparedGrade::signalRow(const QRgb* from, std::uint16_t* to, int pixels) const {
    std::uint16_t* pixel = to;
    for (int x = 0; x < pixels; ++x, pixel += 3) {
        pixel[0] = m_signals[std::size_t(qRed(from[x])) * 3];
        pixel[1] = m_signals[std::size_t(qGreen(from[x])) * 3 + 1];
        pixel[2] = m_signals[std::size_t(qBlue(from[x])) * 3 + 2];
    }
    preview(UI::PixelLayout::RGBHalf, to, pixels);
}

/** Stores pixels as 8-bit 4:2:2 and reads them back. */
void PreparedGrade::preview(UI::PixelLayout own, void* pixels, int count) const {
    if (m_preview == Grade::NoPreview)
        return;
    const UI::PixelLayout layout = previewLayout(m_preview);
    std::vector<float> planes(std::size_t(count) * 3);
    const UI::PlanarRow row = planarRow(planes.data(), count);
    std::vector<std::uint8_t> packed(UI::rowBytes(layout, count));
    UI::decodeRow(own, pixels, row, count);
    UI::encodeRow(layout, row, count, packed.data(), UI::colorSpaceRgbToYCbCr(m_preview));
    UI::decodeRow(layout, packed.data(), row, count, UI::colorSpaceYCbCrToRgb(m_preview));
    UI::encodeRow(own, row, count, pixels);
}

UI::PixelLayout previewLayout(int option) {
    using UI::PixelLayout;
    // The legacy options differ in the range of their codes.
    const bool legacy = option == UI::rowColorSpace(PixelLayout::CbYCrY8LegacyMpeg);
    return legacy ? PixelLayout::CbYCrY8LegacyMpeg : PixelLayout::CbYCrY8;
}

} // namespace Kestrel::Workbench
