#include "media/DisplayTable.h"

#include "media/Samples.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

namespace Kestrel::Workbench {

namespace {

double halfValue(std::uint16_t bits) {
    const int exponent = (bits >> 10) & 0x1f;
    const int fraction = bits & 0x3ff;
    double value = 0.0;
    if (exponent == 31)
        value = fraction == 0 ? std::numeric_limits<double>::infinity()
                              : std::numeric_limits<double>::quiet_NaN();
    else if (exponent == 0)
        value = std::ldexp(fraction, -24);
    else
        value = std::ldexp(fraction + 1024, exponent - 25);
    return (bits & 0x8000) != 0 ? -value : value;
}

double lightOfFilmLog(double signal) {
    const auto exposure = [](double code) { return std::pow(10.0, (code - 685.0) * 0.002 / 0.6); };
    const double black = exposure(95.0);
    return (exposure(signal * 1023.0) - black) / (1.0 - black);
}

template <typename Signal>
DisplayTable makeTable(Signal signalOf) {
    DisplayTable table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = screenCode(signalOf(std::uint16_t(i)));
    return table;
}

} // namespace

Encoding encodingOf(const std::string& colorSpace, bool floatingPoint) {
    std::string name = colorSpace;
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    const auto says = [&name](const char* word) { return name.find(word) != std::string::npos; };
    if (says("linear") || says("lin_") || says("acescg"))
        return Encoding::SceneLinear;
    if (says("kodaklog") || says("cineon"))
        return Encoding::FilmLog;
    if (says("srgb") || says("rec709") || says("gamma"))
        return Encoding::Display;
    return floatingPoint ? Encoding::SceneLinear : Encoding::Display;
}

double srgbSignal(double light) {
    if (!(light > 0.0))
        return 0.0;
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

double srgbLight(double signal) {
    if (!(signal > 0.0))
        return 0.0;
    return signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4);
}

std::uint8_t screenCode(double signal) {
    // The first test also catches what is not a number.
    if (!(signal > 0.0))
        return 0;
    return std::uint8_t(std::lround(std::min(signal, 1.0) * 255.0));
}

double valueOf(SampleFormat::Type type, std::uint16_t sample) {
    switch (type) {
    case SampleFormat::Type::Integer16:
        return sample / 65535.0;
    case SampleFormat::Type::Half:
        return halfValue(sample);
    case SampleFormat::Type::Byte:
        break;
    }
    return sample / 255.0;
}

double lightOf(const SampleFormat& format, std::uint16_t sample) {
    const double value = valueOf(format.type, sample);
    switch (format.encoding) {
    case Encoding::SceneLinear:
        return value;
    case Encoding::FilmLog:
        return lightOfFilmLog(value);
    case Encoding::Display:
        break;
    }
    return srgbLight(value);
}

const DisplayTable& halfTable(Encoding encoding) {
    static const DisplayTable linear =
        makeTable([](std::uint16_t bits) { return srgbSignal(halfValue(bits)); });
    static const DisplayTable display =
        makeTable([](std::uint16_t bits) { return halfValue(bits); });
    return encoding == Encoding::SceneLinear ? linear : display;
}

const DisplayTable& integerTable(Encoding encoding) {
    static const DisplayTable linear =
        makeTable([](std::uint16_t code) { return srgbSignal(code / 65535.0); });
    static const DisplayTable log =
        makeTable([](std::uint16_t code) { return srgbSignal(lightOfFilmLog(code / 65535.0)); });
    static const DisplayTable display =
        makeTable([](std::uint16_t code) { return code / 65535.0; });
    switch (encoding) {
    case Encoding::SceneLinear:
        return linear;
    case Encoding::FilmLog:
        return log;
    case Encoding::Display:
        break;
    }
    return display;
}

} // namespace Kestrel::Workbench
