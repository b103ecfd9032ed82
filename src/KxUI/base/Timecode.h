#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/** Frame counts as text and back: timecode with and without drop frame (SMPTE ST 12-1), plain frame
    numbers, feet and frames.

    Pure functions for any thread, defined for every 64-bit time. None throws, except where memory
    runs out. */
namespace Kestrel::Base::Timecode {

/** How a time is written. The values are part of saved settings. */
enum DisplayType : std::int32_t {
    Timecode = 0,          ///< 01:02:03:04: hours, minutes, seconds, frames
    DropFrameTimecode = 1, ///< 01;02;03;04: labels are skipped to keep pace with the clock
    Frames = 2,            ///< 93784
    FeetFrames40 = 3,      ///< 12+05: feet and frames, 40 frames to the foot (16 mm film)
    FeetFrames16 = 4       ///< 12+05: feet and frames, 16 frames to the foot (35 mm film)
};

/** Room enough for every text that format() writes. */
inline constexpr std::size_t MaximumLength = 24;

/** Writes what toString() returns into `buffer`, which has at least MaximumLength bytes, and
    returns its length; no terminating zero is written. Null gets nothing, of length 0. */
KXUI_EXPORT std::size_t format(char* buffer, Time time, const TimeBase& base, DisplayType type,
                               bool showPlus = false, Time offset = 0) noexcept;

/** The text of `time + offset`. Hours wrap at 24. A negative time has a "-" before the whole text;
    one that is not gets a "+" if `showPlus` is set (not in Frames). Frames and feet are cut to 32
    bits. DropFrameTimecode at a rate that drops nothing is written as Timecode. InvalidTime is
    written as "--" in Frames and as dashes in four fields in every other type. An invalid base has
    all timecode fields 0. A value that is no DisplayType gives an empty text. */
KXUI_EXPORT std::string toString(Time time, const TimeBase& base, DisplayType type,
                                 bool showPlus = false, Time offset = 0);

/** The time that a typed text means, less `offset`; InvalidTime where the base is invalid, the text
    is malformed or a field is out of range.

    The whole text is one of: one to four runs of digits separated by ":", ";" or "." (any of them
    may be empty once there is a separator); digits followed by "h", "m" or "s"; two numbers joined
    by "+". Each may begin with "-", and so may the number after "+". Numbers saturate at 32 bits.
    - Frames: the leading integer, 0 where there is none.
    - Timecode, DropFrameTimecode: runs are filled from the right, frames first. Without a separator
      the digits are taken in pairs from the right ("10203" is 1 minute 2 seconds 3 frames), after
      "h", "m" or "s" was replaced by six, four or two zeros. Minutes and seconds go up to 59,
      frames to the rounded rate less one; hours are not checked. A label that drop frame skips is
      accepted and lies before the minute.
    - FeetFrames40, FeetFrames16: the two numbers joined by "+"; `offset` is not subtracted,
      although toString() adds it: hosts rely on fields that read feet this way.

    `fieldCount`, where given, receives the number of fields that the text filled, 1 to 4 (4 in feet
    and frames). It is left alone where the base or the text is refused, and in Frames. */
KXUI_EXPORT Time fromString(std::string_view text, const TimeBase& base, DisplayType type,
                            Time offset = 0, std::int32_t* fieldCount = nullptr) noexcept;

/** The notation that the last ":" or ";" of a text implies; Frames where it has neither. */
KXUI_EXPORT DisplayType displayTypeOf(std::string_view text) noexcept;

/** Splits a frame count into timecode fields. `drop` skips labels if the base is an NTSC rate that
    rounds to 30 or 60. Of a negative count only the most significant non-zero field is negative.
    All fields are 0 where the base is invalid or its rate rounds to 0. */
KXUI_EXPORT void toFields(Time count, const TimeBase& base, bool drop, std::int32_t& hours,
                          std::int32_t& minutes, std::int32_t& seconds,
                          std::int32_t& frames) noexcept;

/** The frame count of timecode fields. The number of seconds is computed in 32 bits and wraps. */
KXUI_EXPORT Time fromFields(const TimeBase& base, bool drop, std::int32_t hours,
                            std::int32_t minutes, std::int32_t seconds,
                            std::int32_t frames) noexcept;

/** The number of labels that drop frame skipped before a frame: what is added to `count`, 0 or
    more, before it is split into fields. At 30 labels a second, 2 are skipped at each minute that
    is not a multiple of ten; at 60, 4; 0 at every other rate. */
KXUI_EXPORT Time dropFrameOffset(Time count, std::int32_t fps) noexcept;

} // namespace Kestrel::Base::Timecode
