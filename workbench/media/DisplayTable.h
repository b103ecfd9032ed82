#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Kestrel::Workbench {

/** From every 16-bit sample to the 8-bit code that an sRGB screen shows for it. */
using DisplayTable = std::array<std::uint8_t, 65536>;

/** What the samples of a file mean. */
enum class Encoding {
    Display,     ///< encoded for a screen already
    SceneLinear, ///< proportional to light
    FilmLog,     ///< printing density, as film scanners write it
};

/** The encoding that a file's colour space name stands for; where the name says nothing, floating
    point is scene-linear and integers are meant for a screen. */
Encoding encodingOf(const std::string& colorSpace, bool floatingPoint);

/** The table for half-float samples (by their bits). Not a number and negatives are black, what
    exceeds 1 is white. FilmLog is not stored as half and reads as Display. */
const DisplayTable& halfTable(Encoding encoding);

/** The table for 16-bit integer samples. Film log is turned to light by the Cineon convention
    (black at 95 and white at 685 of 1023, 0.002 density a code value, gamma 0.6). */
const DisplayTable& integerTable(Encoding encoding);

/** The sRGB transfer of IEC 61966-2-1: from light in 0 .. 1 to signal in 0 .. 1. */
double srgbSignal(double light);

/** Undoes srgbSignal. */
double srgbLight(double signal);

/** The 8-bit code of a signal. Not a number and negatives are 0, what exceeds 1 is 255. */
std::uint8_t screenCode(double signal);

} // namespace Kestrel::Workbench
