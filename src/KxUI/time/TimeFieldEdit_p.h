#pragma once

#include <KxUI/base/Time.h>
#include <KxUI/base/TimeBase.h>
#include <KxUI/base/Timecode.h>

#include <string_view>

namespace Kestrel::UI {

/** What a time field shows its time as. */
struct TimeFieldNotation {
    Base::TimeBase timeBase{25, false};
    Base::Timecode::DisplayType type = Base::Timecode::Timecode;
    Base::Time offset = 0; ///< the timecode of frame 0
};

/** What the user meant by a text. */
struct TimeFieldEdit {
    enum Kind {
        Nothing, ///< no text
        Failed,  ///< it can not be read
        SetTime, ///< go to `time`
        SetRange ///< the range `time` to `upper`; `upper` may be invalid
    };

    Kind kind = Nothing;
    Base::Time time = Base::InvalidTime;
    Base::Time upper = Base::InvalidTime;
};

/** Reads a text without surrounding blanks: "+" and "-" step from `current` (from 0 if that is
    invalid), a "-" further inside joins two times to a range, anything else is a time. */
TimeFieldEdit readTimeFieldEdit(std::string_view text, const TimeFieldNotation& notation,
                                Base::Time current);

/** The number of frames that the digit right of `caret` counts in a text; 0 where there is none or
    the number does not fit. */
Base::Time timeFieldDigitStep(std::string_view text, int caret, const TimeFieldNotation& notation);

/** a + b; InvalidTime where the sum does not fit. */
Base::Time addTimes(Base::Time a, Base::Time b);

} // namespace Kestrel::UI
